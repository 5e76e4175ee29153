// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/engine/bridge/test_support.h"

using namespace veltro;
using namespace veltro::test;

class PythonObjectTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Python(); }
    void attributesAndItemsAreReadSetAndDeleted();
    void callPassesPositionalAndNamedArgumentsInOrder();
    void throwingFormThrowsTheException();
    void checkingFormYieldsNothingAndLeavesNoErrorPending();
    void iterationVisitsEveryElementAndMayFailHalfway();
    void operatorsFollowTheInterpreter();
    void descriptionNeverFails();
    void accessKeepsTheCounts();

    void exceptionIsDescribedWithAndWithoutTraceback();
    void callOfWhatCannotBeCalledIsInvalid();
    void failedImportThrowsItsException();
    void errorThatLeavesItsJobKeepsItsTexts();
};

void PythonObjectTest::attributesAndItemsAreReadSetAndDeleted()
{
    const PythonObject object = evaluate("type('X', (), {})()");
    object.setAttr("title", "a");
    QCOMPARE(object.attr("title").description(), "a");
    object.throwing().setAttr("title", 2);
    QCOMPARE(repr(object.throwing().attr("title")), "2");
    QVERIFY(object.checking().setAttr("title", true));
    QCOMPARE(repr(*object.checking().attr("title")), "True");

    const PythonObject entries = Python().attr("dict")();
    entries.setItem("a", 1);
    entries.throwing().setItem(2, "b");
    QVERIFY(entries.checking().setItem("gone", 0));
    QVERIFY(entries.checking().removeItem("gone"));
    QCOMPARE(repr(entries), "{'a': 1, 2: 'b'}");
    QCOMPARE(repr(entries["a"]) + repr(entries.throwing()[2]), "1'b'");
    entries.removeItem("a");
    entries.throwing().removeItem(2);
    QCOMPARE(repr(entries), "{}");
}

void PythonObjectTest::callPassesPositionalAndNamedArgumentsInOrder()
{
    const PythonObject echo = function("def f(*args, **named): return repr((args, named))");
    QCOMPARE(echo().description(), "((), {})");
    QCOMPARE(echo(1, "a", false).description(), "((1, 'a', False), {})");
    QCOMPARE(echo.call({"x"}, {{"z", 1}, {"a", PythonObject::none()}}).description(),
             "(('x',), {'z': 1, 'a': None})");
    QCOMPARE(echo.checking().call({}, {{"m", 0.5}})->description(), "((), {'m': 0.5})");
}

void PythonObjectTest::throwingFormThrowsTheException()
{
    const auto message = [](const auto &operation) {
        const PythonError error = thrownBy(operation);
        return error.value().attr("__class__").attr("__name__").description() + ": " +
               error.message();
    };
    const ThrowingPythonObject view = evaluate("(1, 2)").throwing();
    QCOMPARE(message([&] { (void)view.attr("nope"); }),
             "AttributeError: 'tuple' object has no attribute 'nope'");
    QCOMPARE(message([&] { (void)view[5]; }), "IndexError: tuple index out of range");
    QCOMPARE(message([&] { view.setItem(0, 1); }),
             "TypeError: 'tuple' object does not support item assignment");
    QCOMPARE(message([&] { view.removeItem(0); }),
             "TypeError: 'tuple' object doesn't support item deletion");
    // Newer interpreters add a reason.
    QVERIFY(message([&] {
                view.setAttr("a", 1);
            }).starts_with("AttributeError: 'tuple' object has no attribute 'a'"));
    QCOMPARE(message([&] { Python().attr("int").throwing().call({"x"}); }),
             "ValueError: invalid literal for int() with base 10: 'x'");
    QVERIFY(!pythonErrorPending());
}

void PythonObjectTest::checkingFormYieldsNothingAndLeavesNoErrorPending()
{
    const CheckingPythonObject view = evaluate("(1, 2)").checking();
    QVERIFY(!view.attr("nope") && !pythonErrorPending());
    QVERIFY(!view[5] && !pythonErrorPending());
    QVERIFY(!view.setItem(0, 1) && !pythonErrorPending());
    QVERIFY(!view.removeItem(0) && !pythonErrorPending());
    QVERIFY(!view.setAttr("a", 1) && !pythonErrorPending());
    QVERIFY(!view.call() && !pythonErrorPending());
    QVERIFY(!Python().attr("int").checking().call({"x"}) && !pythonErrorPending());
    // A key that cannot be hashed fails in another place than a missing one.
    QVERIFY(!Python().attr("dict")().checking()[Python().attr("dict")()] && !pythonErrorPending());
}

void PythonObjectTest::iterationVisitsEveryElementAndMayFailHalfway()
{
    std::string seen;
    for (const PythonObject &element : evaluate("{'b': 1, 'a': 2}")) {
        seen += element.description();
    }
    QCOMPARE(seen, "ba");
    const PythonObject failing = function("def f():\n yield 1\n yield 2\n raise ValueError('x')");
    seen.clear();
    try {
        for (const PythonObject &element : failing().throwing()) {
            seen += element.description();
        }
    } catch (const PythonError &error) {
        seen += error.message();
    }
    QCOMPARE(seen, "12x");
    QVERIFY_THROWS_EXCEPTION(PythonError, (void)PythonObject(1).throwing().begin());
    QVERIFY(!pythonErrorPending());
}

void PythonObjectTest::operatorsFollowTheInterpreter()
{
    const PythonObject six = 6;
    const PythonObject four = 4;
    QVERIFY(six == 6.0 && six != four && four < six && four <= four && six > four && six >= six);
    QVERIFY(!(six == "6") && !(six < four));
    QCOMPARE(repr(std::vector<PythonObject>{six + four, six - four, six * four, six / four,
                                            six & four, six | four, six ^ four, -six, ~six}),
             "[10, 2, 24, 1.5, 4, 6, 2, -6, -7]");
    PythonObject list = std::vector<int>{1};
    const PythonObject same = list;
    list += std::vector<int>{2};
    QCOMPARE(repr(same), "[1, 2]");
    PythonObject number = 12;
    number -= 2;
    number *= 3;
    number |= 1;
    number &= 30;
    number ^= 2;
    number /= 4;
    QCOMPARE(repr(number), "7.0");
    QCOMPARE(repr(six), "6");
}

void PythonObjectTest::descriptionNeverFails()
{
    QCOMPARE(evaluate("'a\\ud83db'").description(), "a?b");
    QCOMPARE(evaluate("type('Broken', (), {'__str__': lambda s: 1 / 0})()").description(),
             "<unprintable Broken>");
    QVERIFY(!pythonErrorPending());
}

void PythonObjectTest::accessKeepsTheCounts()
{
    const PythonObject value = evaluate("object()");
    const PythonObject holder = function("def f(*args, **named): return args[0]");
    const std::int64_t before = referenceCount(value);
    for (int i = 0; i < 3; ++i) {
        holder.setAttr("kept", value);
        const PythonObject entries = Python().attr("dict")();
        entries.setItem("k", value);
        const PythonObject copy = entries["k"];
        holder.call({holder.attr("kept")}, {{"named", copy}});
        for (const PythonObject &element : std::vector<PythonObject>{value}) {
            (void)element.checking()["nope"];
        }
        QVERIFY(!value.checking().call({value}, {{"a", value}}));
        QVERIFY_THROWS_EXCEPTION(PythonError, (void)value.throwing().attr("nope"));
    }
    holder.setAttr("kept", 0);
    // A failed lookup keeps its object in the exception, which may sit in a cycle until collected.
    Python().import("gc").attr("collect")();
    QCOMPARE(referenceCount(value), before);
}

void PythonObjectTest::exceptionIsDescribedWithAndWithoutTraceback()
{
    const auto bare = PythonError::exception(evaluate("ValueError('a b')"), std::nullopt);
    QCOMPARE(bare.description(), "Python exception: a b");
    QCOMPARE(std::string(bare.what()), bare.description());
    const PythonObject failing = function("def g():\n raise KeyError('k')\ndef f():\n g()");
    const PythonError error = thrownBy([&] { failing.throwing().call(); });
    QCOMPARE(error.kind(), PythonError::Kind::exception);
    QCOMPARE(error.message(), "'k'");
    QCOMPARE(error.description(), "Python exception: 'k'\nTraceback:\n"
                                  "  File \"<string>\", line 4, in f\n"
                                  "  File \"<string>\", line 2, in g\n");
}

void PythonObjectTest::callOfWhatCannotBeCalledIsInvalid()
{
    const PythonError error = thrownBy([] { PythonObject(5).throwing().call(); });
    QCOMPARE(error.kind(), PythonError::Kind::invalidCall);
    QCOMPARE(error.description(), "Invalid Python call: 5");
    QCOMPARE(PythonError::invalidModule("x").description(), "Invalid Python module: x");
}

void PythonObjectTest::failedImportThrowsItsException()
{
    const PythonError error = thrownBy([] { (void)Python().attemptImport("no_such_module"); });
    QCOMPARE(error.kind(), PythonError::Kind::exception);
    QCOMPARE(error.message(), "No module named 'no_such_module'");
    QVERIFY(!pythonErrorPending());
    QCOMPARE(Python().attemptImport("sys").attr("argv")[0].description(), "");
}

void PythonObjectTest::errorThatLeavesItsJobKeepsItsTexts()
{
    const PythonObject failing = function("def f(): raise ValueError('gone')");
    PythonError kept = thrownBy([&] { failing.throwing().call(); });
    const std::int64_t before = referenceCount(kept.value());
    const PythonObject value = kept.value();
    kept.leaveJob();
    QCOMPARE(referenceCount(value), before);
    QVERIFY(!kept.traceback());
    QCOMPARE(kept.message(), "gone");
    QVERIFY(kept.description().find("in f") != std::string::npos);
}

QTEST_APPLESS_MAIN(PythonObjectTest)
#include "tst_python_object.moc"
