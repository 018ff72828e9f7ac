#include "SharedColorDialog.h"

#include "colour/SharedColorPanel.h"

#include <QColorDialog>
#include <QCoreApplication>
#include <QPointer>

namespace Ombrel {

namespace {

QPointer<QColorDialog> &dialogSlot()
{
    static QPointer<QColorDialog> dialog;
    return dialog;
}

// A window must go before the application object; the post routines run at
// the start of the application's destruction.
void deleteDialog()
{
    delete dialogSlot().data();
}

void present(const std::optional<Color> &color)
{
    QColorDialog *dialog = sharedColorDialog();
    if (color)
        dialog->setCurrentColor(color->toQColor());
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

} // namespace

QColorDialog *sharedColorDialog()
{
    QPointer<QColorDialog> &dialog = dialogSlot();
    if (!dialog) {
        dialog = new QColorDialog;
        dialog->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::NoButtons |
                           QColorDialog::DontUseNativeDialog);
        dialog->setModal(false);
        SharedColorPanel &panel = SharedColorPanel::instance();
        QObject::connect(dialog, &QColorDialog::currentColorChanged, &panel,
                         &SharedColorPanel::colorChanged);
        QObject::connect(dialog, &QDialog::finished, &panel, &SharedColorPanel::closed);
        qAddPostRoutine(deleteDialog);
    }
    return dialog;
}

void installSharedColorDialog()
{
    SharedColorPanel::instance().installPresenter(present);
}

} // namespace Ombrel
