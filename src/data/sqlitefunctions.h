#pragma once
// Scalar functions that the file-database blocks of the statements use
// (Now, Date, Year, Month, Day, Format, DateAdd, IIf, Left, Right, Mid, Len,
// Val, Nz, UCase, LCase, Trim, CStr, CLng, CDbl). They belong to one
// connection: register them after every open.

class QSqlDatabase;

bool registerFileDbFunctions(QSqlDatabase& db);
