#pragma once

#include "FileOperations/EntryProperties.h"
#include "Look/SheetFrame.h"

#include <memory>

namespace brellin {

/// "Eigenschaften" of one or more entries: kind, size, location, dates, permissions, tags and, on request, the digest
/// of the content.
class PropertiesSheet : public SheetFrame {
    Q_OBJECT
public:
    PropertiesSheet(std::unique_ptr<EntryProperties> properties, QWidget *window);
    ~PropertiesSheet() override;

    /// Opens the sheet with "Fertig" focused, so that Return changes nothing.
    void begin();

    /// Reads the entries again, after they were changed.
    void readAgain();

    /// "Rechte ändern …".
    Q_SIGNAL void rightsWanted();
    /// Tags of these entries were changed.
    Q_SIGNAL void tagsChanged(const std::vector<brellin::Location> &entries);

protected:
    void confirm() override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
