#include "Features/Screens/DocumentPicture.h"

#include "Base/Location.h"
#include "Disk/FileTypes.h"

namespace brellin {

QPixmap documentPicture(std::string_view name, double side, double pixelsPerPoint, EntryIcons::Mark mark)
{
    const std::string_view extension = extensionOf(name);
    return EntryIcons::document(shown(extension), fileCategory(extension), side, pixelsPerPoint, mark);
}

} // namespace brellin
