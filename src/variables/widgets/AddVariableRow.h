#pragma once

#include <QWidget>

#include <optional>

class QLineEdit;
class QToolButton;

namespace Ombrel {

// A row for typing a new variable: name, colon, value and two buttons. It
// opens with the focus in the name; Return or Tab there moves on to the
// value, Return in the value commits, Escape anywhere cancels. A commit is
// taken only for a name of "--" and at least one character more, and a
// value, both trimmed; otherwise the row stays open as it is.
//
// New variables come from the canvas's sheet; this row is a component kept
// ready with its behaviour, which no view places.
class AddVariableRow : public QWidget
{
    Q_OBJECT

public:
    enum class Field { Name, Value };

    explicit AddVariableRow(QWidget *parent = nullptr);

    QLineEdit *nameField() const { return m_name; }
    QLineEdit *valueField() const { return m_value; }
    QToolButton *commitButton() const { return m_commit; }
    QToolButton *cancelButton() const { return m_cancel; }
    // The field that has the focus, if one has.
    std::optional<Field> focusedField() const;

    void commit();

Q_SIGNALS:
    void committed(const QString &name, const QString &value);
    void cancelled();

protected:
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyPalette();

    QLineEdit *m_name;
    QLineEdit *m_value;
    QToolButton *m_commit;
    QToolButton *m_cancel;
};

} // namespace Ombrel
