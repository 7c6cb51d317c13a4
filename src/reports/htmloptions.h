// The HTML layout options as the options dialog edits them: the nineteen keys of section
// "HTML" it writes, in their order, the prefix it cleans, and its samples and summary.
#pragma once

#include "core/configuration.h"
#include "core/language.h"
#include "core/settings.h"

#include <QString>

namespace brindar {

struct HtmlOptions {
    QString prefixeTableau;
    bool ajouterDate = false;
    bool effacerAnciensTableaux = true;
    bool imagesSuivent = false;
    QString pathListeTableaux;
    bool indexListes = true;
    bool indexType = true;
    QString texteEnTete;  // both header keys as one text
    QString imageEnTete;
    bool renvoiALaLigne = false;
    qint32 couleurTitre = 65535;
    QString imageFond;
    QString imageDebutTableau;
    bool totalDocuments = true;
    bool displayDirectory = true;
    QString textePied;  // both footer keys as one text
    QString imagePied;
};

// A value is read back at most this long: a header or footer text is kept over two keys.
inline constexpr int kHtmlValueLength = 254;
inline constexpr int kHtmlTextLength = 2 * kHtmlValueLength;

HtmlOptions HtmlOptionsOf(const Configuration& configuration);
// The keys in the dialog's order; a header or footer text is split at kHtmlValueLength.
SettingsChange HtmlOptionsChange(const HtmlOptions& options);

// The prefix without the characters a file name cannot hold (\ / : * ? " < > |).
QString CleanPrefix(QString prefix);

// The texts the sample labels put into the header and footer fields.
QString SampleHeaderText(const Captions& captions);
QString SampleFooterText(const Captions& captions);

// The short HTML summary: the lines of its message box.
QString HtmlSummaryText(const Captions& captions);

}  // namespace brindar
