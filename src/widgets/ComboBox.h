#pragma once

#include <QComboBox>

#include <functional>

namespace Ombrel {

// An editable combo box whose text can be typed freely or picked from its
// items, with completion; Tab runs an action of the caller's when one is set.
class ComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ComboBox(QWidget *parent = nullptr);

    // Shows text unless the box already does.
    void showText(const QString &text);
    void setOnTab(std::function<void()> onTab) { m_onTab = std::move(onTab); }

Q_SIGNALS:
    void textChangedByUser(const QString &text);

protected:
    bool event(QEvent *event) override;

private:
    std::function<void()> m_onTab;
};

} // namespace Ombrel
