// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/engine/bridge/test_support.h"

#include <algorithm>
#include <limits>
#include <sstream>

using namespace veltro;
using namespace veltro::test;

namespace {

using PythonEntries = std::vector<std::pair<std::string, PythonObject>>;

template <typename Value>
std::string show(const Value &value)
{
    std::ostringstream text;
    text << std::boolalpha << value;
    return text.str();
}

/// A NUL as a bar, so that a row can be compared as it reads.
std::string show(std::string value)
{
    std::replace(value.begin(), value.end(), '\0', '|');
    return value;
}

std::string show(const PythonBytes &value)
{
    return show(value.bytes());
}

std::string show(const std::optional<std::string> &value)
{
    return show(value.value_or("absent"));
}

template <typename Key, typename Value>
std::string show(const std::pair<Key, Value> &entry)
{
    return entry.first + ":" + entry.second;
}

template <typename Element>
std::string show(const std::vector<Element> &elements)
{
    std::string text = "[";
    for (const Element &element : elements) {
        text += text.size() > 1 ? "," : "";
        text += show(element);
    }
    return text.append("]");
}

template <typename Value>
std::string reading(const std::string &name, const PythonObject &object)
{
    const auto value = object.to<Value>();
    if (pythonErrorPending()) {
        return name + " left an error ";
    }
    return value ? name + "=" + show(*value) + " " : "";
}

/// All that the object can be read as.
std::string readings(const PythonObject &object)
{
    return reading<std::string>("text", object) + reading<std::int64_t>("int", object) +
           reading<std::uint64_t>("unsigned", object) + reading<double>("double", object) +
           reading<bool>("bool", object) + reading<PythonBytes>("bytes", object) +
           reading<std::vector<std::string>>("list", object) +
           reading<std::vector<std::pair<std::string, std::string>>>("dict", object) +
           reading<std::optional<std::string>>("optional", object);
}

}

class PythonConversionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Python(); }
    void objectIsReadAsWhatItIsAndNothingElse_data();
    void objectIsReadAsWhatItIsAndNothingElse();
    void mapsAndNestedContainersAreRead();
    void hostValueBecomesItsPythonCounterpart_data();
    void hostValueBecomesItsPythonCounterpart();
    void bytesThatAreNotUtf8ComeOutOfTheFileFunctionsAsTheyWentIn();
    void conversionsKeepTheCounts();
};

void PythonConversionsTest::objectIsReadAsWhatItIsAndNothingElse_data()
{
    QTest::addColumn<std::string>("expression");
    QTest::addColumn<std::string>("expected");
    const auto row = [](const char *name, std::string expression, std::string expected) {
        QTest::newRow(name) << expression << expected;
    };
    row("a small integer", "7", "int=7 unsigned=7 double=7 ");
    row("a negative integer", "-1", "int=-1 unsigned=18446744073709551615 double=-1 ");
    row("beyond the signed range", "2**63", "unsigned=9223372036854775808 double=9.22337e+18 ");
    row("beyond every range", "10**400", "unsigned=0 ");
    row("a fraction", "-1.0", "double=-1 ");
    row("a truth value", "True", "int=1 unsigned=1 double=1 bool=true ");
    row("a text", "'d\u00e9'", "text=d\u00e9 list=[d,\u00e9] optional=d\u00e9 ");
    row("an empty text", "''", "text= list=[] optional= ");
    row("a text with a NUL", "'a\\0b'", "text=a|b list=[a,|,b] optional=a|b ");
    row("a lone surrogate", "'\\ud83d'", "");
    row("bytes", "b'x\\0y'", "bytes=x|y ");
    row("None", "None", "optional=absent ");
    row("a list", "['z', 'a']", "list=[z,a] ");
    row("a list with another kind in it", "['z', 1]", "");
    row("a generator", "(c for c in 'ab')", "list=[a,b] ");
    row("a generator that fails", "(1 // 0 for _ in 'ab')", "");
    row("a dict in its order", "{'z': 'y', 'a': 'b'}", "list=[z,a] dict=[z:y,a:b] ");
    row("a dict with another kind in it", "{'a': 1}", "list=[a] ");
    row("an object", "object()", "");
    row("an object whose conversions fail",
        "type('X', (), {'__float__': lambda s: 1 / 0, '__index__': lambda s: 1 / 0, "
        "'__iter__': lambda s: 1 / 0})()",
        "");
}

void PythonConversionsTest::objectIsReadAsWhatItIsAndNothingElse()
{
    QFETCH(std::string, expression);
    QFETCH(std::string, expected);
    QCOMPARE(readings(evaluate(expression)), expected);
}

void PythonConversionsTest::mapsAndNestedContainersAreRead()
{
    using Nested = std::map<std::string, std::vector<std::optional<double>>>;
    const auto nested = evaluate("{'b': (1, None), 'a': []}").to<Nested>();
    QVERIFY(nested == (Nested{{"a", {}}, {"b", {1.0, std::nullopt}}}));
    QVERIFY(!evaluate("[('a', [1])]").to<Nested>());
    const auto mixed = evaluate("[1, 'a', None]").to<std::vector<PythonObject>>();
    QVERIFY(mixed && mixed->size() == 3 && mixed->at(2).isNone());
}

void PythonConversionsTest::hostValueBecomesItsPythonCounterpart_data()
{
    QTest::addColumn<std::string>("made");
    QTest::addColumn<std::string>("expected");
    const auto row = [](const char *name, const PythonObject &made, std::string expected) {
        QTest::newRow(name) << repr(made) << expected;
    };
    row("true", true, "True");
    row("a small type", static_cast<short>(-3), "-3");
    row("the least integer", std::numeric_limits<std::int64_t>::min(), "-9223372036854775808");
    row("the greatest unsigned", std::numeric_limits<std::uint64_t>::max(), "18446744073709551615");
    row("a fraction", 0.5, "0.5");
    row("a literal", "it's", "\"it's\"");
    row("no text", std::string_view(), "''");
    row("a text with a NUL", std::string("a\0b", 3), "'a\\x00b'");
    row("bytes", PythonBytes(std::string("\0\xff", 2)), "b'\\x00\\xff'");
    row("absent", std::optional<int>(), "None");
    row("present", std::optional<int>(4), "4");
    row("truth values", std::vector<bool>{true, false}, "[True, False]");
    row("mixed", std::vector<PythonObject>{1, "a", PythonObject::none()}, "[1, 'a', None]");
    row("nested", std::vector<std::vector<int>>{{1}, {}}, "[[1], []]");
    row("a map", std::map<std::string, double>{{"b", 1.5}, {"a", 2}}, "{'a': 2.0, 'b': 1.5}");
    row("ordered entries", PythonKeywords{{"b", 1}, {"a", "x"}}, "{'b': 1, 'a': 'x'}");
}

void PythonConversionsTest::hostValueBecomesItsPythonCounterpart()
{
    QFETCH(std::string, made);
    QFETCH(std::string, expected);
    QCOMPARE(made, expected);
}

void PythonConversionsTest::bytesThatAreNotUtf8ComeOutOfTheFileFunctionsAsTheyWentIn()
{
    const std::string name = "caf\xe9";
    const PythonObject encoded = Python().import("os").attr("fsencode")(name);
    QCOMPARE(encoded.to<PythonBytes>().value().bytes(), name);
}

void PythonConversionsTest::conversionsKeepTheCounts()
{
    const PythonObject element = evaluate("object()");
    const std::int64_t before = referenceCount(element);
    {
        const PythonObject list = std::vector<PythonObject>{element, element};
        QCOMPARE(referenceCount(element), before + 2);
        const PythonObject entries = PythonKeywords{{"a", element}};
        QCOMPARE(list.to<std::vector<PythonObject>>().value().size(), 2U);
        QCOMPARE(entries.to<PythonEntries>().value().size(), 1U);
        QVERIFY(!list.to<std::vector<double>>() && !element.to<bool>());
        QCOMPARE(referenceCount(element), before + 3);
    }
    QCOMPARE(referenceCount(element), before);
}

QTEST_APPLESS_MAIN(PythonConversionsTest)
#include "tst_python_conversions.moc"
