#pragma once

#include <QDialog>
#include <QStringList>

class QLabel;
class QLineEdit;
class QPushButton;

namespace Ombrel {

class ComboBox;

// The sheet that asks for a new custom property: the ruleset it goes to
// (picked or typed), its name and its value. Like the ruleset sheet it only
// reports; Add stays disabled until the name and value would be accepted.
class NewVariableSheet : public QDialog
{
    Q_OBJECT

public:
    explicit NewVariableSheet(QWidget *parent = nullptr);

    // Shows the fields unless they already show these texts. Without
    // selectors the ruleset row is hidden.
    void showValues(const QString &name, const QString &value, const QString &selector,
                    const QStringList &rulesetSelectors);

    ComboBox *selectorBox() const { return m_selector; }
    QLineEdit *nameField() const { return m_name; }
    QLineEdit *valueField() const { return m_value; }
    QPushButton *addButton() const { return m_add; }

    void accept() override;
    void reject() override;

Q_SIGNALS:
    void nameEdited(const QString &text);
    void valueEdited(const QString &text);
    void selectorEdited(const QString &text);
    void committed();
    void cancelled();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void updateAddButton();

    QLabel *m_selectorCaption;
    ComboBox *m_selector;
    QLineEdit *m_name;
    QLineEdit *m_value;
    QPushButton *m_add;
};

} // namespace Ombrel
