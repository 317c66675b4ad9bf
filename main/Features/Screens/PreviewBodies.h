#pragma once

#include "Features/PreviewContent.h"

#include <QPlainTextEdit>
#include <QTreeWidget>

namespace brellin {

/// The text of a file, selectable but not editable.
class PreviewTextView : public QPlainTextEdit {
    Q_OBJECT
public:
    /// `factor` scales the font.
    PreviewTextView(double factor, QWidget *parent);

    void showText(const PreviewText &text);

private:
    void dress();

    const double m_factor;
};

/// The entries of an archive with their sizes.
class PreviewArchiveList : public QTreeWidget {
    Q_OBJECT
public:
    PreviewArchiveList(double factor, QWidget *parent);

    void showArchive(const PreviewArchive &archive);

private:
    void dress();

    const double m_factor;
};

/// What to say below a text or archive that is not shown completely; otherwise empty.
QString remarkOf(const PreviewBody &body);

} // namespace brellin
