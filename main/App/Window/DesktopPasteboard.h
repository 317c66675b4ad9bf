#pragma once

#include "FileOperations/ClipboardFiles.h"
#include "System/Workspace.h"

namespace brellin {

/// Pasteboard on the desktop's clipboard.
class DesktopPasteboard : public Pasteboard {
public:
    void setText(const QString &text) override;
};

/// Puts files on the clipboard in all formats that common file managers read.
void putOnClipboard(const ClipboardFiles &files);
/// The files on the clipboard; none if it holds something else.
std::optional<ClipboardFiles> filesOnClipboard();
/// Clears the clipboard after a move, so that cut files are not pasted again.
void clearCutFiles();

} // namespace brellin
