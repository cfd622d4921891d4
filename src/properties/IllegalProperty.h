#pragma once

#include <Vokit/BaseProperty>

namespace vogen {

/**
 * The property that isn't there: what a PropertySet gives for a name that it doesn't hold.
 *
 * It has no value, takes none, and reads as the caller's default through getValue() of any typed
 * property. All threads share the one object; nothing in the library writes to it but a validator
 * that a caller runs on it.
 */
class VOKIT_EXPORT IllegalProperty : public BaseProperty
{
public:
    IllegalProperty();

    QString type() const override;
    /// Writes the one line "IllegaProperty": readers of dumps look for this spelling.
    QTextStream &dump(QTextStream &stream) const override;
    QVariant variantValue() const override;
    bool setVariantValue(const QVariant &value) override;

    static IllegalProperty ms_illegalProperty;
};

} // namespace vogen
