#include "SearchText.h"

#include <QList>

namespace SearchText {

QString fold(const QString& text)
{
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size() + 2);
    folded.append(QLatin1Char(' '));
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        if (c.isLetterOrNumber())
            folded.append(c.toCaseFolded());
        else if (!folded.endsWith(QLatin1Char(' ')))
            folded.append(QLatin1Char(' '));
    }
    if (!folded.endsWith(QLatin1Char(' ')))
        folded.append(QLatin1Char(' '));
    return folded;
}

bool matches(const QByteArray& foldedText, const QByteArray& foldedQuery)
{
    // Each word of " a b " is looked for with its leading space: a prefix of some word.
    int start = 0;
    bool any = false;
    while (start < foldedQuery.size()) {
        const int end = foldedQuery.indexOf(' ', start + 1);
        if (end < 0)
            break;
        if (end > start + 1) {
            any = true;
            if (foldedText.indexOf(foldedQuery.mid(start, end - start)) < 0)
                return false;
        }
        start = end;
    }
    return any;
}

} // namespace SearchText
