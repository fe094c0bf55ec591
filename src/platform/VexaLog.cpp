#include "VexaLog.h"

#include "VexaJson.h"

QString dbglog_scopedFunction(const char* signature, const char* /*loggerName*/)
{
    QString text = QString::fromLatin1(signature);
    const int paren = text.indexOf(QLatin1Char('('));
    if (paren >= 0)
        text.truncate(paren);
    // The name is the last word before the parameter list: it drops the
    // return type and specifiers such as "virtual".
    const int space = text.lastIndexOf(QLatin1Char(' '));
    return space >= 0 ? text.mid(space + 1) : text;
}

const char* boolText(bool value)
{
    return value ? "true" : "false";
}

std::ostream& operator<<(std::ostream& out, const QString& text)
{
    return out << text.toUtf8().constData();
}

std::ostream& operator<<(std::ostream& out, const QStringList& list)
{
    return out << '(' << list.join(QStringLiteral(", ")) << ')';
}

std::ostream& operator<<(std::ostream& out, const QList<int>& list)
{
    out << '(';
    for (int i = 0; i < list.size(); ++i)
        out << (i ? ", " : "") << list.at(i);
    return out << ')';
}

std::ostream& operator<<(std::ostream& out, const QVariant& value)
{
    return out << VexaJson::toJson(value).constData();
}

std::ostream& operator<<(std::ostream& out, const CMPath& path)
{
    return out << path.toEncoded();
}

std::ostream& operator<<(std::ostream& out, const VexaHash& hash)
{
    return out << hash.toVariant();
}
