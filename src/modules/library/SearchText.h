#pragma once

#include <QByteArray>
#include <QString>

// Text as search compares it: accents dropped, case folded, every run of
// anything but letters and digits made one space, with a space at each end
// (" beyonce deja vu "), so that "every word a prefix" is a plain substring
// test of " word".
namespace SearchText {

QString fold(const QString& text);
// Whether every word of the folded query starts some word of the folded text.
bool matches(const QByteArray& foldedText, const QByteArray& foldedQuery);

} // namespace SearchText
