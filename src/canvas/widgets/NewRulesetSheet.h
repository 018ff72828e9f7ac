#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace Ombrel {

// The sheet that asks for the selector of a new ruleset. It reports, and the
// canvas decides: Add (or Return) commits, Cancel (or Escape) cancels, and
// the canvas closes the sheet.
class NewRulesetSheet : public QDialog
{
    Q_OBJECT

public:
    explicit NewRulesetSheet(QWidget *parent = nullptr);

    // Shows text unless the field already does.
    void showSelector(const QString &text);
    QLineEdit *selectorField() const { return m_selector; }
    QPushButton *addButton() const { return m_add; }

    void accept() override;
    void reject() override;

Q_SIGNALS:
    void selectorEdited(const QString &text);
    void committed();
    void cancelled();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void updateAddButton();

    QLineEdit *m_selector;
    QPushButton *m_add;
};

} // namespace Ombrel
