#include "DesktopServices.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

namespace Ombrel {

int runWarningPrompt(const Prompt &prompt, QWidget *parent)
{
    QMessageBox box(QMessageBox::Warning, QString(), prompt.message, QMessageBox::NoButton, parent);
    box.setInformativeText(prompt.informativeText);
    QList<QAbstractButton *> buttons;
    for (const QString &title : prompt.buttons) {
        // The role only places the button; the answer comes from its position.
        const bool first = buttons.isEmpty();
        const bool last = buttons.size() == prompt.buttons.size() - 1;
        const QMessageBox::ButtonRole role = first  ? QMessageBox::AcceptRole
                                             : last ? QMessageBox::RejectRole
                                                    : QMessageBox::DestructiveRole;
        buttons.append(box.addButton(title, role));
    }
    if (!buttons.isEmpty())
        box.setDefaultButton(qobject_cast<QPushButton *>(buttons.first()));
    box.exec();
    const qsizetype clicked = buttons.indexOf(box.clickedButton());
    return clicked < 0 ? FirstButtonResponse + int(buttons.size()) - 1
                       : FirstButtonResponse + int(clicked);
}

QString chooseFolder(const FolderRequest &request, QWidget *parent)
{
    QFileDialog dialog(parent, request.message);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setLabelText(QFileDialog::Accept, request.prompt);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
}

void revealInFileManager(const QString &path)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 3000);
    if (reply.type() != QDBusMessage::ReplyMessage)
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

QString showInFileManagerLabel()
{
#if defined(Q_OS_MACOS)
    return QObject::tr("Show in Finder");
#elif defined(Q_OS_WIN)
    return QObject::tr("Show in Explorer");
#else
    return QObject::tr("Show in File Manager");
#endif
}

} // namespace Ombrel
