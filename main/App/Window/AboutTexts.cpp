#include "App/Window/AboutTexts.h"

#include "Base/Edition.h"

namespace brellin {

/// The licences are those of docs/dependencies.md.
QStringList aboutLines()
{
    return {QStringLiteral("Version %1, mit Qt %2").arg(Edition::version(), QString::fromLatin1(qVersion())),
            QStringLiteral("Alles bleibt auf diesem Rechner. Nichts wird hochgeladen."),
            {},
            QStringLiteral("Lizenzen"),
            QStringLiteral("Qt 6: LGPL 3.0"),
            QStringLiteral("Qt PDF mit PDFium: LGPL 3.0, BSD-3-Clause und Apache 2.0"),
            QStringLiteral("libarchive: BSD-2-Clause"),
            QStringLiteral("OpenSSL: Apache 2.0"),
            QStringLiteral("Symbole von Lucide: ISC und MIT"),
            QStringLiteral("Schrift Inter, falls installiert: SIL Open Font License 1.1"),
            {},
            QStringLiteral("Datenquellen"),
            QStringLiteral("Dateiarten: die gemeinsame MIME-Datenbank dieses Rechners"),
            QStringLiteral("Programme: ihre Desktop-Dateien und die Liste mimeapps.list"),
            QStringLiteral("Laufwerke: die Mount-Tabelle und der Dienst UDisks"),
            QStringLiteral("Deine Ordner: user-dirs.dirs"),
            QStringLiteral("Vorschaubilder: aus den Dateien selbst, gespeichert im gemeinsamen Zwischenspeicher")};
}

} // namespace brellin
