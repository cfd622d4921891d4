#include <Vokit/Vokit.h>

#include "time/time.h" // a client's own header: no folder of the library may stand in its way

#include <QDataStream>
#include <QTemporaryDir>
#include <QTranslator>

#include <cstdio>
#include <string>

using namespace vogen;

// As of a client's own Translations.qrc: it must not stand in for the library's.
int qInitResources_Translations();
int qInitResources_Translations()
{
    return 1;
}

namespace {

int gFailures = 0;

void check(bool holds, const char *what)
{
    if (!holds) {
        std::printf("fails: %s\n", what);
        ++gFailures;
    }
}

boost::shared_ptr<BaseProperty> shared(BaseProperty *property)
{
    return boost::shared_ptr<BaseProperty>(property);
}

// Classes of the client's over those of the library: what they need is exported.
class UpperCase : public Operator
{
public:
    explicit UpperCase(ExpressionHandle operand) { append(operand); }
    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override
    {
        return operandAt(0).evaluate(properties, isConstant).toString().toUpper();
    }
    Expression *clone() const override { return new UpperCase(*this); }
    bool equals(const Expression *other) const override
    {
        return dynamic_cast<const UpperCase *>(other) && Operator::equals(other);
    }
    void print(QTextStream &stream, PrintStyle style) const override
    {
        stream << "upper(";
        printOperands(stream, style, 0, ",");
        stream << ')';
    }
};

class EvenNumbers : public PropertyValidator
{
public:
    bool validate(PropertySet & /*set*/, BaseProperty &property) override
    {
        property.setValid(IntProperty::getValue(property, 0) % 2 == 0);
        return property.isValid();
    }
};

class Tagged : public StringProperty
{
public:
    using StringProperty::StringProperty;
    QString type() const override { return QStringLiteral("Tagged"); }
};

class Camera : public vo::Persistable
{
public:
    void load(vo::IPersistDestination *destination) override
    {
        number = destination->value("Number", 0).toInt();
    }
    void save(vo::IPersistDestination *destination) override
    {
        destination->setValue("Number", number);
    }
    int number = 0;
};

class Playback : public vo::Feature
{
public:
    Playback()
        : Feature(17)
    {}
};

} // namespace

int main()
{
    check(client::ownHeader() == 5, "the client's own time/time.h");

    const StringProperty type("type");
    const IntProperty camera("camera");
    ElementOf cameras(camera);
    cameras.append(QVariant(3)).append(QVariant(7));
    const ExpressionHandle filter = (type == "alarm" || type != "door") && cameras;
    check(filter->toString(Expression::PrintSql | Expression::PrintPlaceholders) ==
              "(type = ? OR type != ?) AND camera IN (?,?)",
          "the text");
    check(filter->collectPlaceholders().size() == 4, "the values");

    PropertySet set;
    set.add(shared(new Tagged("type", "", "alarm")));
    set.add(shared(new IntProperty("camera", "", 7)));
    check(filter->evaluate(set, nullptr) == QVariant(true), "in memory");
    check(dynamic_cast<const BooleanOperator *>(filter.constData()) != nullptr, "casts");

    const ExpressionHandle upper =
        UpperCase(ValueExpression(type, "")) == ConstExpression("ALARM", true);
    check(upper->evaluate(set, nullptr) == QVariant(true), "a node of the client's");
    check(upper->toString() == "upper(type) = 'ALARM'", "and its text");
    check(Expression::registerExpressionClass(UpperCase(ExpressionHandle())), "registered");
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    Expression::writeExpression(out, upper);
    QDataStream in(bytes);
    check(Expression::readExpression(in).equals(upper), "and stored");

    set["camera"].setValidator(boost::shared_ptr<PropertyValidator>(new EvenNumbers));
    set.validate();
    check(!set["camera"].isValid(), "a validator of the client's");
    set["camera"].setValidator(boost::shared_ptr<PropertyValidator>(new DefaultIntValidator(0, 9)));
    set.validate();
    check(set["camera"].isValid(), "a validator of the library's");

    try {
        IntProperty::getValue(set["type"], 0);
        check(false, "a wrong class throws");
    } catch (const vo::UnexpectedTypeException &e) {
        check(e.actualType() == "Tagged", "across the library's border");
    }
    try {
        TypeTool(false, false).throwOK();
        TypeTool tool(true, true);
        tool.compare(QVariant(), QVariant());
        tool.throwOK();
        check(false, "a failed comparison throws on demand");
    } catch (const std::exception &e) {
        check(std::string(e.what()) == "can't compare values", e.what());
    }
    check(vo::fromFrameTime(1500000) == vo::fromSeconds(1.0), "time");
    check(vo::CTimeTranscoder::MICROSECONDS_PER_DAY == 86400000000, "units");
    const long long *const unit = &vo::CTimeTranscoder::MILLISECONDS_PER_DAY;
    check(*unit == 86400000, "with an address");
    const QTemporaryDir dir;
    vo::Settings settings(dir.filePath("client.ini"), QSettings::IniFormat);
    Camera saved;
    saved.number = 7;
    saved.save(&settings);
    Camera loaded;
    loaded.load(&settings);
    check(loaded.number == 7, "settings");
    vo::IInterface *const interface = &settings;
    check(dynamic_cast<vo::Settings *>(interface) == &settings, "casts of interfaces");
    vo::FeatureMatrix rights(1, 1);
    rights.addUserGroup(new vo::UserGroup(0));
    rights.addFeatureGroup(new vo::FeatureGroup(0, "Playback", "Search and play"));
    rights.addFeatureToGroup(new Playback, 0);
    check(rights.isFeatureAllowed(17, 0), "rights");
    char hash[14];
    check(QByteArray(Crypt::crypt_r("rasmuslerdorf", "rl", hash)) == "rl.3StKT.4T8M", "hashes");
    check(Crypt::crypt("rl", "rasmuslerdorf").startsWith("rl") && Crypt::m_shifts[2] == 1 &&
              Crypt::S[7][63] == 11,
          "and their tables");
    check(vo::Log::instance().logLevel() == vo::Log::LevelWarning, "platform");
    QTranslator german;
    check(german.load(":/Translations/Vokit_de.qm"), "the catalogues travel with the library");
    check(german.translate("ActionLog", "Upload Assistant") == "Update-Assistent", "translated");
    check(qvariant_cast<PropertySet>(QVariant::fromValue(set)) == set, "meta type");
    if (gFailures == 0)
        std::puts("all is well");
    return gFailures;
}
