#pragma once
// Rich text in reports: the privacy notice and other texts kept as RTF are
// printed with their paragraphs, bold, italics and sizes. Only what those
// texts use is read; everything else of RTF is skipped.

#include <QString>

// HTML for a text of rich-text objects: RTF converted, plain text escaped
// with its line breaks kept.
QString testoRiccoInHtml(const QString& testo);
