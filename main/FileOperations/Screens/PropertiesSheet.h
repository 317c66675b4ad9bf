#pragma once

#include "FileOperations/EntryProperties.h"
#include "Look/Cards.h"

#include <memory>

namespace brellin {

/// "Eigenschaften" of one entry or of several: what it is, how large, where, since when, who may do what, its tags, and on
/// request the digest of its content.
class PropertiesSheet : public SheetFrame {
    Q_OBJECT
public:
    PropertiesSheet(std::unique_ptr<EntryProperties> properties, QWidget *window);
    ~PropertiesSheet() override;

    /// Opens with the keys on "Fertig", so that Return changes nothing.
    void begin();

    /// Tags of the entries were changed.
    Q_SIGNAL void tagsChanged(const std::vector<brellin::Location> &entries);

protected:
    void confirm() override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
