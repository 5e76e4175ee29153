// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QColor>
#include <QQuickPaintedItem>
#include <QTransform>
#include <QtQml/qqmlregistration.h>

namespace veltro {

struct IconDrawing;

/// How the 24 by 24 unit square is laid into a frame: scaled by the smaller of the two ratios, and
/// the result centred.
[[nodiscard]] QTransform iconPlacement(const QSizeF &frame);

/// A drawing by name, in one colour. Main thread, but paint.
class PathItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY drawingChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY drawingChanged)
public:
    explicit PathItem(QQuickItem *parent = nullptr);

    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString &name);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void drawingChanged();

protected:
    void componentComplete() override;
    /// Line width in units of the square.
    [[nodiscard]] virtual double lineWidth() const = 0;
    [[nodiscard]] virtual bool isFilled() const { return false; }
    void drawingHasChanged();

private:
    void paintLines(QPainter &painter, const QPainterPath &path) const;
    void paintCut(QPainter &painter, const IconDrawing &drawing) const;

    QString m_name;
    QColor m_color = Qt::black;
};

/// A line icon of the design: `stroke` in units of its square, or filled.
class LineIcon : public veltro::PathItem { // in full: the registration of types looks for it so
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double stroke READ stroke WRITE setStroke NOTIFY drawingChanged)
    Q_PROPERTY(bool fill READ fill WRITE setFill NOTIFY drawingChanged)
public:
    using PathItem::PathItem;

    [[nodiscard]] double stroke() const { return m_stroke; }
    void setStroke(double stroke);
    [[nodiscard]] bool fill() const { return m_fill; }
    void setFill(bool fill);

protected:
    [[nodiscard]] double lineWidth() const override { return m_stroke; }
    [[nodiscard]] bool isFilled() const override { return m_fill; }

private:
    double m_stroke = 1.8;
    bool m_fill = false;
};

/// A symbol that stands in a text: as large and as heavy as the text's font.
class Symbol : public veltro::PathItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY drawingChanged)
    Q_PROPERTY(int weight READ weight WRITE setWeight NOTIFY drawingChanged)
public:
    explicit Symbol(QQuickItem *parent = nullptr);

    /// The font's size; the drawing's frame is a little larger.
    [[nodiscard]] double size() const { return m_size; }
    void setSize(double size);
    /// A weight as fonts have it: Font.Normal, Font.DemiBold, Font.Bold.
    [[nodiscard]] int weight() const { return m_weight; }
    void setWeight(int weight);

protected:
    [[nodiscard]] double lineWidth() const override;

private:
    void measure();

    double m_size = 13;
    int m_weight = 400;
};

}
