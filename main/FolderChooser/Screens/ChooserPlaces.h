#pragma once

#include "Base/Location.h"

#include <QListWidget>

namespace brellin {

class KnownFolders;
class Pins;
class VolumeList;

/// The places beside the folder chooser's list: quick access, "Benutzerordner" and volumes.
class ChooserPlaces : public QListWidget {
    Q_OBJECT
public:
    /// All must outlive it.
    ChooserPlaces(Pins &pins, VolumeList &volumes, const KnownFolders &folders, QWidget *parent);

    /// Marks the place that is this folder; none if it is not listed.
    void setCurrent(const Location &folder);

    /// By click or Return.
    Q_SIGNAL void chosen(const brellin::Location &folder);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void rebuild();
    void add(const QString &title, const QString &symbol, const Location &folder);

    Pins &m_pins;
    VolumeList &m_volumes;
    const KnownFolders &m_folders;
    Location m_current;
};

} // namespace brellin
