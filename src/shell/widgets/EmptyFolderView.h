#pragma once

#include <QWidget>

class QLabel;

namespace Ombrel {

class Workspace;

// The window on a folder without stylesheets: it offers to create one or to
// open another folder.
class EmptyFolderView : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyFolderView(Workspace *workspace, QWidget *parent = nullptr);

private:
    void updateMessage();

    Workspace *m_workspace;
    QLabel *m_message;
};

} // namespace Ombrel
