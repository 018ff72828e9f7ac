#pragma once

#include <QWidget>

namespace Ombrel {

class Workspace;

// The window without a folder: the product's name, three lines on what it
// does, and the button that opens a folder.
class WelcomeView : public QWidget
{
    Q_OBJECT

public:
    explicit WelcomeView(Workspace *workspace, QWidget *parent = nullptr);
};

} // namespace Ombrel
