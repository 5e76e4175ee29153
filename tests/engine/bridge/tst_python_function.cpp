// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/engine/bridge/test_support.h"

#include <stdexcept>

using namespace veltro;
using namespace veltro::test;

namespace {

struct DiskFull : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What Python code sees that calls the closure: its result, or the exception's type and text.
template <typename Closure>
std::string seen(Closure closure, const PythonArguments &arguments = {},
                 const PythonKeywords &named = {})
{
    const PythonObject caller = function(R"(
def f(callable, *args, **named):
    try:
        return repr(callable(*args, **named))
    except BaseException as error:
        return type(error).__name__ + '(' + str(error) + ')'
)");
    PythonArguments all{PythonFunction(std::move(closure))};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const std::string result = caller.call(all, named).description();
    return pythonErrorPending() ? "an error is pending after " + result : result;
}

}

class PythonFunctionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Python(); }
    void closureReceivesThePositionalArguments();
    void closureReceivesTheNamedArgumentsInOrder();
    void hostErrorIsRaisedAsAnExceptionThatNamesItsType();
    void thrownExceptionObjectIsRaisedItself();
    void interpreterErrorPassesThroughAClosureWithItsTraceback();
    void closureLivesAsLongAsItsCallable();
};

void PythonFunctionTest::closureReceivesThePositionalArguments()
{
    const auto sum = [](PythonArguments arguments) -> PythonObject {
        PythonObject result = 0;
        for (const PythonObject &argument : arguments) {
            result += argument;
        }
        return result;
    };
    QCOMPARE(seen(sum), "0");
    QCOMPARE(seen(sum, {1, 2.5}), "3.5");
    QCOMPARE(seen(sum, {1}, {{"named", 2}}),
             "TypeError(veltro_closure() takes no keyword arguments)");
}

void PythonFunctionTest::closureReceivesTheNamedArgumentsInOrder()
{
    const auto echo = [](PythonArguments arguments, PythonKeywords named) {
        std::string text = std::to_string(arguments.size());
        for (const auto &[name, value] : named) {
            text += " " + name + "=" + value.description();
        }
        return text;
    };
    QCOMPARE(seen(echo), "'0'");
    QCOMPARE(seen(echo, {1, 2}, {{"z", "x"}, {"a", true}}), "'2 z=x a=True'");
}

void PythonFunctionTest::hostErrorIsRaisedAsAnExceptionThatNamesItsType()
{
    const auto raising = [](auto error) {
        return [error](PythonArguments) -> PythonObject { throw error; };
    };
    QCOMPARE(seen(raising(DiskFull("no space"))), "Exception(DiskFull raised in Veltro: no space)");
    QCOMPARE(seen(raising(5)), "Exception(int raised in Veltro: no description)");
    QCOMPARE(seen(raising(PythonError::invalidModule("m"))),
             "Exception(PythonError raised in Veltro: Invalid Python module: m)");
    QCOMPARE(seen(raising(PythonObject("text"))), "Exception(PythonObject raised in Veltro: text)");
    // A message in another encoding is carried, not refused.
    QVERIFY(seen(raising(DiskFull("\xff"))).starts_with("Exception(DiskFull raised in Veltro: "));
    const auto keyword = [](PythonArguments, PythonKeywords) -> PythonObject {
        throw DiskFull("here too");
    };
    QCOMPARE(seen(keyword), "Exception(DiskFull raised in Veltro: here too)");
}

void PythonFunctionTest::thrownExceptionObjectIsRaisedItself()
{
    const PythonObject interrupt = evaluate("KeyboardInterrupt('stop')");
    QCOMPARE(seen([&](PythonArguments) -> PythonObject { throw interrupt; }),
             "KeyboardInterrupt(stop)");
    QCOMPARE(seen([&](PythonArguments) -> PythonObject {
                 throw PythonError::exception(interrupt, std::nullopt);
             }),
             "KeyboardInterrupt(stop)");
    const PythonObject caller = function(R"(
def f(callable):
    try:
        callable()
    except BaseException as error:
        return error
)");
    const PythonObject caught =
        caller(PythonFunction([&](PythonArguments) -> PythonObject { throw interrupt; }));
    QCOMPARE(caught.pointer(), interrupt.pointer());
}

void PythonFunctionTest::interpreterErrorPassesThroughAClosureWithItsTraceback()
{
    const PythonObject inner = function("def f(): raise LookupError('deep')");
    const PythonFunction between([&](PythonArguments) { return inner.throwing().call(); });
    const PythonObject outer = function("def f(callable): callable()");
    const PythonError error = thrownBy([&] { outer.throwing().call({between}); });
    QCOMPARE(error.message(), "deep");
    // Both Python frames, though a host frame lies between them.
    QCOMPARE(error.description(), "Python exception: deep\nTraceback:\n"
                                  "  File \"<string>\", line 1, in f\n"
                                  "  File \"<string>\", line 1, in f\n");
}

void PythonFunctionTest::closureLivesAsLongAsItsCallable()
{
    auto state = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = state;
    {
        std::optional<PythonFunction> made(
            [state](PythonArguments) -> PythonObject { return ++*state; });
        state.reset();
        const PythonObject list = std::vector<PythonObject>{*made};
        made.reset();
        QCOMPARE(repr(list[0]()), "1");
        QCOMPARE(repr(list[0]()), "2");
        QVERIFY(!watch.expired());
    }
    QVERIFY(watch.expired());
}

QTEST_APPLESS_MAIN(PythonFunctionTest)
#include "tst_python_function.moc"
