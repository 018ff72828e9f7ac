#pragma once

#include <QWidget>

namespace Ombrel {

// What the inspector column shows while no ruleset is selected.
class InspectorPlaceholder : public QWidget
{
    Q_OBJECT

public:
    explicit InspectorPlaceholder(QWidget *parent = nullptr);
};

} // namespace Ombrel
