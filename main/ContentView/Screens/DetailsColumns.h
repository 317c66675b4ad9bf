#pragma once

#include "ContentView/Screens/ItemRows.h"
#include "System/UserDefaults.h"

#include <array>
#include <vector>

class QHeaderView;
class QMenu;

namespace brellin {

/// The columns of a details view: which ones are shown, in what order and how wide. Stored for all views. A column that a
/// narrow view has no room for keeps its width.
class DetailsColumns : public QObject {
    Q_OBJECT
public:
    DetailsColumns(QHeaderView &header, UserDefaults &defaults);

    /// Shows what fits beside the name: first what the place always shows, then the columns chosen last.
    void fit(int width, const std::vector<Column> &always);
    /// Whether any column shown needs details of entries.
    bool showsDetails() const;
    void choose(Column column, bool wanted);
    /// Takes over which columns another view has stored; followed by `fit`.
    void readChosen();
    /// Adds an entry for each column.
    void addTo(QMenu &menu);

    /// The choice of columns has changed.
    Q_SIGNAL void chosen();
    Q_SIGNAL void notStored(const QString &reason);

private:
    void readWidths();
    void resized(int section, int width);
    void saveWidths();
    void show();
    void store(const QString &key, const QVariant &value);

    QHeaderView &m_header;
    UserDefaults &m_defaults;
    std::array<int, columnCount> m_widths{}; ///< for the design's font size; also of hidden columns
    std::vector<Column> m_chosen;            ///< the last chosen first
    int m_width = 0;                         ///< of the view
    std::vector<Column> m_always;
    bool m_fitting = false;
    QTimer m_saveSoon;
};

} // namespace brellin
