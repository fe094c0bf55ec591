#pragma once

#include "VexaGlobal.h"

#include <QString>

// Translation of user texts. Each module installs its catalogues (Qt .qm files
// compiled by lrelease); a text is looked up in the catalogues of the user's
// language (settings:/language) and falls back to the text itself.
class VEXA_API Language
{
public:
    static QString ntr(const QString& context, const QString& text);
    static QString ntr(const char* context, const char* text);

    // Adds the catalogue in qmFile for language; false when it cannot be loaded.
    static bool installCatalogue(const QString& language, const QString& qmFile);
    // The user's current language code, "en" when the setting is unset.
    static QString current();
};

// The class name of the function whose signature is given:
// "RootNode" for "virtual bool RootNode::getRowsRequest(const CMGetRowsRequest&)".
VEXA_API QString trExtractContext(const char* signature);

// A user text, looked up in the translation context of the calling member's class.
#define VEXA_TR(text) Language::ntr(trExtractContext(__PRETTY_FUNCTION__), QStringLiteral(text))
