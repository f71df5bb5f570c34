#include "Failure.h"

namespace steplets {

Failure::Failure(long number, QString description, QString source)
    : m_number(number), m_description(std::move(description)), m_source(std::move(source)),
      m_what(QStringLiteral("%1 (%2)").arg(m_description).arg(m_number).toUtf8())
{
}

Failure Failure::invalidCall(const QString& detail)
{
    return Failure(5, detail.isEmpty() ? QStringLiteral("Invalid procedure call or argument") : detail);
}
Failure Failure::overflow() { return Failure(6, QStringLiteral("Overflow")); }
Failure Failure::subscript() { return Failure(9, QStringLiteral("Subscript out of range")); }
Failure Failure::typeMismatch() { return Failure(13, QStringLiteral("Type mismatch")); }
Failure Failure::objectNotSet() { return Failure(91, QStringLiteral("Object variable or With block variable not set")); }
Failure Failure::noSuchElement(int index)
{
    return Failure(340, QStringLiteral("Control array element '%1' doesn't exist").arg(index));
}
Failure Failure::objectUnloaded() { return Failure(364, QStringLiteral("Object was unloaded")); }
Failure Failure::invalidPropertyValue() { return Failure(380, QStringLiteral("Invalid property value")); }
Failure Failure::invalidPropertyIndex() { return Failure(381, QStringLiteral("Invalid property array index")); }
Failure Failure::textReadOnly() { return Failure(383, QStringLiteral("'Text' property is read-only")); }
Failure Failure::alreadyShownModally() { return Failure(400, QStringLiteral("Form already displayed; can't show modally")); }
Failure Failure::indexOutOfBounds() { return Failure(35600, QStringLiteral("Index out of bounds")); }
Failure Failure::invalidUseOfNull() { return Failure(94, QStringLiteral("Invalid use of Null")); }

} // namespace steplets
