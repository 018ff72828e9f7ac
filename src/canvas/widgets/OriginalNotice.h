#pragma once

#include "model/CSSFile.h"

#include <QHash>
#include <QMetaObject>
#include <QUuid>
#include <QWidget>

class QToolButton;

namespace Ombrel {

class Workspace;

// The line over the canvas of a file whose loaded text a save does not keep
// whole: what a save drops and that the original is kept, or after the save
// whether it could be. It follows the workspace's selected file and takes its
// colours from the palette: the window's, tinted with the accent.
//
// The user can dismiss it for one file at a time. It stays away for that file
// as long as it would tell the same (a kept original after the notice that
// said so counts as the same); news that the original could not be kept
// always shows.
class OriginalNotice : public QWidget
{
    Q_OBJECT

public:
    explicit OriginalNotice(Workspace &workspace, QWidget *parent = nullptr);

    // The line as it stands, whether or not the notice shows.
    QString text() const { return m_text; }
    QToolButton *dismissButton() const { return m_dismiss; }

    // Hides the notice for the selected file.
    void dismiss();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void followSelectedFile();
    void updateNotice();
    void applyPalette();
    QRect textRect() const;

    Workspace &m_workspace;
    CSSFilePtr m_file;
    QMetaObject::Connection m_fileConnection;
    QToolButton *m_dismiss;
    QString m_text;
    // Per file, the state in which its notice was dismissed.
    QHash<QUuid, OriginalState> m_dismissed;
};

} // namespace Ombrel
