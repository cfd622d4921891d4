#pragma once

#include <Vokit/BaseProperty>

#include <QMap>
#include <QMetaType>
#include <QStringList>

namespace vogen {

/**
 * The properties that an expression can see, filed by name.
 *
 * A copy has its own list of names, but leads to the same property objects: a value written
 * through one set is read through the other.
 *
 * @code
 * PropertySet clip;
 * clip.add(boost::shared_ptr<BaseProperty>(new IntProperty("camera", "Camera number", 7)));
 * IntProperty::getValue(clip["camera"], 0); // 7
 * IntProperty::getValue(clip["speed"], 1);  // 1: an unknown name reads as the default
 * @endcode
 *
 * Ordered by name, by UTF-16 code unit. Nothing here locks: copies may live in different threads,
 * the property objects that they share may not be used by two at a time. begin(), end(),
 * validate() and operator[] of a non-const set count as writes to it.
 */
class VOKIT_EXPORT PropertySet
{
public:
    using Map = QMap<QString, boost::shared_ptr<BaseProperty>>;
    using iterator = Map::iterator;
    using const_iterator = Map::const_iterator;

    PropertySet();
    PropertySet(const PropertySet &other);
    PropertySet &operator=(const PropertySet &other);
    virtual ~PropertySet();

    void clear();

    /// Files the property under its present name, in place of one filed there before.
    /// @param property must not be empty
    void add(boost::shared_ptr<BaseProperty> property);
    /// An unknown name does nothing.
    void remove(const QString &name);

    QStringList allPropertyNames() const;
    int count() const;
    bool contains(const QString &name) const;

    /// The entry of that name, or end(): for callers who need to know whether it is there.
    const_iterator find(const QString &name) const { return m_properties.constFind(name); }

    /// Calls validate() of each property, in order of the names; the verdicts stay with them.
    void validate();

    /// The property called @p name, or IllegalProperty::ms_illegalProperty. Adds no entry.
    BaseProperty &operator[](const QString &name);
    const BaseProperty &operator[](const QString &name) const;

    /**
     * The same names, and values that are equal under QVariant::operator==.
     *
     * Descriptions, validators and classes don't count: an int 5 equals a text "5" on the right. A
     * value that is an invalid QVariant equals nothing, so a set that holds one differs from
     * itself.
     */
    bool operator==(const PropertySet &other) const;
    bool operator!=(const PropertySet &other) const;

    /// Writes all properties between two rules; the last rule ends without a line feed.
    QTextStream &dump(QTextStream &stream) const;

    /// key() is the name, value() the shared pointer.
    iterator begin();
    iterator end();
    const_iterator begin() const { return m_properties.constBegin(); }
    const_iterator end() const { return m_properties.constEnd(); }

    QMap<QString, QVariant> variantValues() const;

    /**
     * Writes each value to the property of that name; a failure does not stop the walk.
     *
     * @return true when every value was taken
     * @warning An unknown name stays behind as an empty entry, which operator[], dump() and
     *          validate() dereference. Check names from outside with contains() first.
     */
    bool setVariantValues(const QMap<QString, QVariant> &values);

    /// The identifier under which Qt knows this class, as "vogen::PropertySet".
    static const int MetaType;

private:
    Map m_properties;
};

} // namespace vogen

Q_DECLARE_METATYPE(vogen::PropertySet)
