#pragma once
// The columns of a QtTest data table in one line:
//   testdb::columns<QString, int>("code", "count");
//   testdb::columns<QString>({"code", "name", "city"}); // several of one type

#include <QTest>

#include <initializer_list>

namespace testdb {

template <typename... T, typename... Name> void columns(Name... names) { (QTest::addColumn<T>(names), ...); }

template <class T> void columns(std::initializer_list<const char*> names)
{
    for (const char* name : names)
        QTest::addColumn<T>(name);
}

} // namespace testdb
