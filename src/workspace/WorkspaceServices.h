#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// The few places where a workspace reaches beyond its model: a question to the
// user, the choice of a folder, and the desktop's file manager. Each is one
// function that the window installs, so that the core stays free of widgets
// and tests answer in place of a person.
namespace Ombrel {

// A confirmation in the style of a warning, run modally, with its buttons in
// the order given.
struct Prompt
{
    QString message;
    QString informativeText;
    QStringList buttons;
};

// The answer to a prompt is the button's position counted from 1000.
enum PromptResponse : int {
    FirstButtonResponse = 1000,
    SecondButtonResponse = 1001,
    ThirdButtonResponse = 1002,
};

using PromptHandler = std::function<int(const Prompt &)>;

// What a folder chooser shows: the label of its accepting button and a line
// of explanation.
struct FolderRequest
{
    QString prompt;
    QString message;
};

// Returns the path of the chosen folder, or an empty string when the user
// chose none.
using FolderChooser = std::function<QString(const FolderRequest &)>;

// Shows the file at the given path in the desktop's file manager.
using FileRevealer = std::function<void(const QString &path)>;

} // namespace Ombrel
