#include <Vokit/IllegalProperty>

namespace vogen {

IllegalProperty IllegalProperty::ms_illegalProperty;

IllegalProperty::IllegalProperty() = default;

QString IllegalProperty::type() const
{
    return QStringLiteral("IllegalProperty");
}

QTextStream &IllegalProperty::dump(QTextStream &stream) const
{
    return stream << "IllegaProperty\n";
}

QVariant IllegalProperty::variantValue() const
{
    return {};
}

bool IllegalProperty::setVariantValue(const QVariant & /*value*/)
{
    return false;
}

} // namespace vogen
