#pragma once

#include "FileOperations/BatchRename.h"
#include "Look/Cards.h"

#include <memory>

namespace brellin {

/// Renames several entries at once: a way and its fields, the preview that follows them, and once it is done the way back.
/// Closed while it renames, it puts everything back first.
class BatchRenameSheet : public SheetFrame {
    Q_OBJECT
public:
    BatchRenameSheet(std::unique_ptr<BatchRename> batch, QWidget *window);
    ~BatchRenameSheet() override;

    /// Opens with the keys in the first field.
    void begin();
    bool isRenaming() const;

    /// The entries have new names, or their old ones again: where they are now.
    Q_SIGNAL void renamed(const std::vector<brellin::Location> &places);

protected:
    void escape() override;
    void confirm() override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
