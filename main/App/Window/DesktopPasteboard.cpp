#include "App/Window/DesktopPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace brellin {

void DesktopPasteboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

void putOnClipboard(const ClipboardFiles &files)
{
    auto *const data = new QMimeData;
    for (const auto &[form, bytes] : clipboardFormsOf(files))
        data->setData(QString::fromLatin1(form), bytes);
    QGuiApplication::clipboard()->setMimeData(data);
}

std::optional<ClipboardFiles> filesOnClipboard()
{
    const QMimeData *const data = QGuiApplication::clipboard()->mimeData();
    if (!data)
        return std::nullopt;
    return clipboardFilesFrom([data](const char *form) { return data->data(QString::fromLatin1(form)); });
}

void clearCutFiles()
{
    const std::optional<ClipboardFiles> files = filesOnClipboard();
    if (files && files->purpose == ClipboardFiles::Purpose::Cut)
        QGuiApplication::clipboard()->clear();
}

} // namespace brellin
