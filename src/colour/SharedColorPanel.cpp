#include "SharedColorPanel.h"

namespace Ombrel {

SharedColorPanel &SharedColorPanel::instance()
{
    static SharedColorPanel panel;
    return panel;
}

void SharedColorPanel::installPresenter(Presenter presenter)
{
    if (!m_presenter)
        m_presenter = std::move(presenter);
}

void SharedColorPanel::present(const std::optional<Color> &color)
{
    Q_EMIT presenting();
    if (m_presenter)
        m_presenter(color);
}

} // namespace Ombrel
