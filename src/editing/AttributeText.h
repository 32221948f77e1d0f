#pragma once

#include <QString>

/// A value as it is to stand behind the "=" of an attribute: plain ones as they are, others in double quotes. Double
/// quotes in it become entities, but for those of server-side code.
QString AttributeText(const QString &value);
