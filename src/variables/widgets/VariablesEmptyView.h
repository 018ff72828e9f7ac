#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace Ombrel {

// What the variables tab shows for a file without custom properties: the
// file's name, what rulesets and variables are, and one button, which adds
// a ruleset to a file that has none and a variable to any other.
class VariablesEmptyView : public QWidget
{
    Q_OBJECT

public:
    explicit VariablesEmptyView(QWidget *parent = nullptr);

    void showFile(const QString &fileName, bool hasRulesets);

    QLabel *message() const { return m_message; }
    QPushButton *button() const { return m_button; }

Q_SIGNALS:
    void newRulesetRequested();
    void newVariableRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyPalette();

    QLabel *m_name;
    QLabel *m_message;
    QPushButton *m_button;
    bool m_hasRulesets = true;
};

} // namespace Ombrel
