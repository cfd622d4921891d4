#pragma once

#include <Vokit/FeatureMatrix>

#include <QStringList>

#include <memory>

namespace test {

/// A matrix that fits its bounds: a feature group for each row, a user group for each column.
inline std::unique_ptr<vo::FeatureMatrix> rights(int rows, int columns)
{
    auto matrix = std::make_unique<vo::FeatureMatrix>(rows, columns);
    for (int row = 0; row < rows; ++row)
        matrix->addFeatureGroup(new vo::FeatureGroup(row, QString(), QString()));
    for (int column = 0; column < columns; ++column)
        matrix->addUserGroup(new vo::UserGroup(column));
    return matrix;
}

/// The same, with its cells as in "101/001": a row behind each slash.
inline std::unique_ptr<vo::FeatureMatrix> rights(const QString &cells)
{
    const QStringList rows = cells.split('/');
    auto matrix = rights(rows.size(), rows.at(0).size());
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < rows.at(row).size(); ++column)
            matrix->setAllowed(row, column, rows.at(row).at(column) == '1');
    }
    return matrix;
}

/// All cells within the bounds, in that form.
inline QString cellsOf(const vo::FeatureMatrix &matrix)
{
    QStringList rows;
    for (int row = 0; row < matrix.rows(); ++row) {
        QString cells;
        for (int column = 0; column < matrix.columns(); ++column)
            cells += matrix.isAllowed(row, column) ? '1' : '0';
        rows << cells;
    }
    return rows.join('/');
}

} // namespace test
