#pragma once

#include <QWidget>

class QLabel;

namespace Ombrel {

// What the canvas shows for a file without rulesets: the file's name, what
// rulesets and variables are, and buttons that start one of each.
class EmptyFileView : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyFileView(QWidget *parent = nullptr);

    // hasVariables picks the line under the name.
    void showFile(const QString &fileName, bool hasVariables);

Q_SIGNALS:
    void newRulesetRequested();
    void newVariableRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyPalette();

    QLabel *m_name;
    QLabel *m_message;
};

} // namespace Ombrel
