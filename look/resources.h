#pragma once
// The shell's own pictures, behind the resource prefix ":/my_shell1/Resources/".

#include <QString>

inline QString shellResource(const QString &name)
{
    return QStringLiteral(":/my_shell1/Resources/") + name;
}
