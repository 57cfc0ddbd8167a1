#pragma once

#include <QString>

/// Keys of the settings store that several parts of the program use. Any other stands where its value is kept.
namespace Velmora::SettingsKeys {

// Preferences, and what counts when nothing is stored.
inline const QString animations = QStringLiteral("animations");
inline const QString defaultAnimations = QStringLiteral("Always");
inline const QString size = QStringLiteral("size");
inline const QString defaultSize = QStringLiteral("50"); // percent

/// The name of what a form generates; below a group named after the form's class, as the keys of all its fields.
inline const QString entity = QStringLiteral("Entity");

} // namespace Velmora::SettingsKeys
