#include "Base/SystemErrorText.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace brellin {

namespace {

struct ErrorText {
    int number;
    const char16_t *text;
};

constexpr std::array errorTexts{
    ErrorText{EPERM, u"Das ist nicht erlaubt."},
    ErrorText{ENOENT, u"Die Datei oder der Ordner ist nicht mehr da."},
    ErrorText{EIO, u"Der Datenträger meldet einen Lese- oder Schreibfehler."},
    ErrorText{ENXIO, u"Das Gerät ist nicht da."},
    ErrorText{EBADF, u"Die Datei ist nicht mehr geöffnet."},
    ErrorText{EAGAIN, u"Das geht gerade nicht – bitte später erneut versuchen."},
    ErrorText{ENOMEM, u"Der Arbeitsspeicher reicht nicht aus."},
    ErrorText{EACCES, u"Dafür fehlt die Berechtigung."},
    ErrorText{EBUSY, u"Die Datei oder der Ordner wird gerade benutzt."},
    ErrorText{EEXIST, u"Es gibt schon etwas mit diesem Namen."},
    ErrorText{EXDEV, u"Quelle und Ziel liegen auf verschiedenen Datenträgern."},
    ErrorText{ENODEV, u"Das Gerät ist nicht da."},
    ErrorText{ENOTDIR, u"Das ist kein Ordner."},
    ErrorText{EISDIR, u"Das ist ein Ordner."},
    ErrorText{EINVAL, u"Das Dateisystem unterstützt das nicht."},
    ErrorText{ENFILE, u"Im System sind zu viele Dateien geöffnet."},
    ErrorText{EMFILE, u"Es sind zu viele Dateien geöffnet."},
    ErrorText{ETXTBSY, u"Das Programm läuft gerade."},
    ErrorText{EFBIG, u"Die Datei ist für diesen Datenträger zu groß."},
    ErrorText{ENOSPC, u"Auf dem Datenträger ist nicht genug Platz."},
    ErrorText{EROFS, u"Der Datenträger ist schreibgeschützt."},
    ErrorText{EMLINK, u"Die Datei hat zu viele Verknüpfungen."},
    ErrorText{ENAMETOOLONG, u"Der Name ist zu lang."},
    ErrorText{ENOTEMPTY, u"Der Ordner ist nicht leer."},
    ErrorText{ELOOP, u"Zu viele Verknüpfungen verweisen aufeinander."},
    ErrorText{EOVERFLOW, u"Die Datei ist zu groß."},
    ErrorText{EILSEQ, u"Der Name enthält Zeichen, die der Datenträger nicht speichern kann."},
    ErrorText{ENOTSUP, u"Das Dateisystem unterstützt das nicht."},
    ErrorText{ENOSYS, u"Das System unterstützt das nicht."},
    ErrorText{EDQUOT, u"Der für dich vorgesehene Speicherplatz ist aufgebraucht."},
    ErrorText{ESTALE, u"Die Verbindung zum Netzlaufwerk ist veraltet."},
    ErrorText{ETIMEDOUT, u"Der Server hat nicht rechtzeitig geantwortet."},
    ErrorText{ECONNREFUSED, u"Der Server lehnt die Verbindung ab."},
    ErrorText{ECONNRESET, u"Die Verbindung wurde getrennt."},
    ErrorText{EHOSTUNREACH, u"Der Server ist nicht erreichbar."},
    ErrorText{ENETUNREACH, u"Das Netzwerk ist nicht erreichbar."},
    ErrorText{ENOTCONN, u"Es besteht keine Verbindung."},
    ErrorText{EHOSTDOWN, u"Der Server ist nicht erreichbar."},
    ErrorText{EPIPE, u"Die Verbindung wurde getrennt."},
    ErrorText{EINTR, u"Der Vorgang wurde unterbrochen."},
    ErrorText{ECANCELED, u"Abgebrochen."},
};

} // namespace

QString systemErrorText(const std::error_code &code)
{
    const auto *const known = std::ranges::find(errorTexts, code.value(), &ErrorText::number);
    if (code.category() == std::generic_category() || code.category() == std::system_category()) {
        if (known != errorTexts.end())
            return QString::fromUtf16(known->text);
    }
    return QStringLiteral("Systemfehler %1 (%2).").arg(code.value()).arg(QString::fromStdString(code.message()));
}

} // namespace brellin
