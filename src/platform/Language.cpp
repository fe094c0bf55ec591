#include "Language.h"

#include "CMRootWorker.h"
#include "VexaPaths.h"
#include "VexaValue.h"

#include <QHash>
#include <QList>
#include <QMutex>
#include <QTranslator>

namespace {

struct Catalogues
{
    QMutex mutex;
    QHash<QString, QList<QTranslator*>> byLanguage;
};

Catalogues& catalogues()
{
    static Catalogues instance;
    return instance;
}

} // namespace

QString Language::ntr(const QString& context, const QString& text)
{
    const QString language = current();
    Catalogues& c = catalogues();
    QMutexLocker lock(&c.mutex);
    const QByteArray contextUtf8 = context.toUtf8();
    const QByteArray textUtf8 = text.toUtf8();
    for (const QTranslator* translator : c.byLanguage.value(language)) {
        const QString translated = translator->translate(contextUtf8.constData(), textUtf8.constData());
        if (!translated.isEmpty())
            return translated;
    }
    return text;
}

QString Language::ntr(const char* context, const char* text)
{
    return ntr(QString::fromUtf8(context), QString::fromUtf8(text));
}

bool Language::installCatalogue(const QString& language, const QString& qmFile)
{
    auto* translator = new QTranslator;
    if (!translator->load(qmFile)) {
        delete translator;
        return false;
    }
    Catalogues& c = catalogues();
    QMutexLocker lock(&c.mutex);
    c.byLanguage[language].append(translator);
    return true;
}

QString Language::current()
{
    const VexaValue value(CMRoot()->getValue(VexaLanguageSettingsPath()).toHash());
    const QString language = value.string_();
    return language.isEmpty() ? QStringLiteral("en") : language;
}

QString trExtractContext(const char* signature)
{
    QString text = QString::fromLatin1(signature);
    const int paren = text.indexOf(QLatin1Char('('));
    if (paren >= 0)
        text.truncate(paren);
    const int scope = text.lastIndexOf(QLatin1String("::"));
    if (scope < 0)
        return QString();
    text.truncate(scope);
    text = text.mid(text.lastIndexOf(QLatin1Char(' ')) + 1);
    const int outer = text.lastIndexOf(QLatin1String("::"));
    return outer < 0 ? text : text.mid(outer + 2);
}
