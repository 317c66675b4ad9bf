#include "Transfers/TargetLimits.h"

#include "Base/German.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

constexpr std::string_view forbidden = "<>:\"\\|?*";

bool isForbidden(unsigned char c)
{
    return c < 0x20 || forbidden.find(static_cast<char>(c)) != std::string_view::npos;
}

} // namespace

TargetLimits TargetLimits::of(const QString &fileSystem)
{
    struct Row {
        QLatin1StringView type;
        Names names = Names::Any;
        bool ignoresCase = false;
        std::int64_t fileBytes = 0; ///< 0: practically unlimited
        bool ignoresForm = false;
    };
    constexpr std::int64_t fat = 4'294'967'295; // 32-bit size field
    constexpr std::array rows{
        Row{QLatin1StringView("vfat"), Names::Windows, true, fat},
        Row{QLatin1StringView("msdos"), Names::Windows, true, fat},
        Row{QLatin1StringView("exfat"), Names::Windows, true, 0},
        Row{QLatin1StringView("fuse.exfat"), Names::Windows, true, 0},
        Row{QLatin1StringView("ntfs"), Names::Windows, true, 0},
        Row{QLatin1StringView("ntfs3"), Names::Windows, true, 0},
        Row{QLatin1StringView("fuseblk"), Names::Windows, true, 0},
        Row{QLatin1StringView("cifs"), Names::Windows, true, 0},
        Row{QLatin1StringView("smb3"), Names::Windows, true, 0},
        Row{QLatin1StringView("hfs"), Names::Any, true, 0, true},
        Row{QLatin1StringView("hfsplus"), Names::Any, true, 0, true},
        Row{QLatin1StringView("apfs"), Names::Any, true, 0, true},
    };
    TargetLimits limits;
    const auto row = std::ranges::find_if(rows, [&](const Row &one) { return fileSystem == one.type; });
    if (row == rows.end())
        return limits;
    limits.names = row->names;
    limits.ignoresCase = row->ignoresCase;
    limits.ignoresForm = row->ignoresForm;
    limits.keepsHoles = false;
    if (row->fileBytes > 0)
        limits.fileBytes = row->fileBytes;
    return limits;
}

std::optional<QString> TargetLimits::nameFault(std::string_view name) const
{
    if (name.size() > nameBytes)
        return QStringLiteral("Der Name ist für das Ziel zu lang.");
    if (names == Names::Any)
        return std::nullopt;
    if (std::ranges::any_of(name, isForbidden))
        return QStringLiteral("Das Ziel kennt keine Namen mit den Zeichen < > : \" \\ | ? *.");
    if (name.ends_with('.') || name.ends_with(' '))
        return QStringLiteral("Das Ziel kennt keine Namen mit einem Punkt oder Leerzeichen am Ende.");
    return std::nullopt;
}

QString TargetLimits::keyOf(const QString &name) const
{
    if (ignoresForm)
        return folded(name);
    return ignoresCase ? name.toCaseFolded() : name;
}

std::optional<QString> TargetLimits::sizeFault(std::int64_t bytes) const
{
    if (!fileBytes || bytes <= *fileBytes)
        return std::nullopt;
    return QStringLiteral("Mit %1 ist die Datei für das Ziel zu groß.").arg(sizeText(bytes));
}

} // namespace brellin
