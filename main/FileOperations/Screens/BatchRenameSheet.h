#pragma once

#include "FileOperations/BatchRename.h"
#include "Look/SheetFrame.h"

#include <memory>

namespace brellin {

/// Renames several entries: a method with its fields, a live preview, and undo afterwards. Closing it during the
/// operation undoes everything first.
class BatchRenameSheet : public SheetFrame {
    Q_OBJECT
public:
    BatchRenameSheet(std::unique_ptr<BatchRename> batch, QWidget *window);
    ~BatchRenameSheet() override;

    /// Opens the sheet with the first field focused.
    void begin();
    bool isRenaming() const;

    /// Emitted after renaming and after undoing, with the present locations of the entries.
    Q_SIGNAL void renamed(const std::vector<brellin::Location> &places);

protected:
    void escape() override;
    void confirm() override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
