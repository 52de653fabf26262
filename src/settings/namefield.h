// SPDX-License-Identifier: MIT
#pragma once

#include "settings/plainfield.h"

/// A tile's name in large letters, cut to 32 characters as the user counts them.
class NameField : public PlainField
{
    Q_OBJECT

public:
    explicit NameField(QWidget *parent);

Q_SIGNALS:
    /// The user changed the text.
    void nameEdited(const QString &name);

private:
    void cut();
};
