#include "Grid.h"
#include "Form.h"
#include "runtime/Failure.h"
#include <QJsonArray>

namespace steplets {

namespace {
Failure invalidRow() { return Failure(30009, QStringLiteral("Invalid Row value")); }
Failure invalidCol() { return Failure(30010, QStringLiteral("Invalid Col value")); }
} // namespace

Grid::Grid(Form& form, const QString& name, int index) : Control(form, name, index) { resize(2, 2); }

void Grid::resize(int rows, int cols) {
    if (rows < 0 || cols < 0) throw Failure::invalidPropertyValue();
    std::vector<QString> cells(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols));
    for (int r = 0; r < std::min(rows, m_rows); ++r)
        for (int c = 0; c < std::min(cols, m_cols); ++c)
            cells[static_cast<std::size_t>(r * cols + c)] = m_cells.empty() ? QString() : m_cells[static_cast<std::size_t>(r * m_cols + c)];
    m_cells = std::move(cells);
    m_rows = rows;
    m_cols = cols;
    m_colWidth.resize(static_cast<std::size_t>(cols), -1);
    m_colAlignment.resize(static_cast<std::size_t>(cols), AlignGeneral);
    m_fixedAlignment.resize(static_cast<std::size_t>(cols), AlignLeftCenter);
    m_row = std::min(m_row, std::max(rows - 1, 0));
    m_col = std::min(m_col, std::max(cols - 1, 0));
    m_topRow = std::min(m_topRow, std::max(rows - 1, 0));
    changed();
}

void Grid::setCols(int cols) { resize(m_rows, cols); }
void Grid::setRows(int rows) { resize(rows, m_cols); }

void Grid::setFixedRows(int n) {
    if (n < 0 || n > m_rows) throw Failure(30015, QStringLiteral("Cannot set fixed rows"));
    m_fixedRows = n;
    changed();
}

void Grid::setFixedCols(int n) {
    if (n < 0 || n > m_cols) throw Failure(30016, QStringLiteral("Cannot set fixed columns"));
    m_fixedCols = n;
    changed();
}

std::size_t Grid::cell(long index) const {
    if (index < 0 || index >= static_cast<long>(m_cells.size())) throw Failure::invalidPropertyIndex();
    return static_cast<std::size_t>(index);
}

QString Grid::TextArray(long index) const { return m_cells[cell(index)]; }

void Grid::setTextArray(long index, const QString& text) {
    m_cells[cell(index)] = text;
    changed();
}

QString Grid::TextMatrix(int row, int col) const {
    if (row < 0 || row >= m_rows) throw invalidRow();
    checkCol(col);
    return m_cells[static_cast<std::size_t>(row * m_cols + col)];
}

void Grid::setTextMatrix(int row, int col, const QString& text) {
    if (row < 0 || row >= m_rows) throw invalidRow();
    checkCol(col);
    m_cells[static_cast<std::size_t>(row * m_cols + col)] = text;
    changed();
}

void Grid::setRow(int row) {
    if (row < 0 || row >= m_rows) throw invalidRow();
    m_row = row;
    changed();
}

void Grid::setCol(int col) {
    checkCol(col);
    m_col = col;
    changed();
}

void Grid::setTopRow(int row) {
    if (row < 0 || row >= m_rows) throw invalidRow();
    m_topRow = row;
    changed();
}

void Grid::checkCol(int col) const {
    if (col < 0 || col >= m_cols) throw invalidCol();
}

int Grid::ColWidth(int col) const { checkCol(col); return m_colWidth[static_cast<std::size_t>(col)]; }
void Grid::setColWidth(int col, int width) { checkCol(col); m_colWidth[static_cast<std::size_t>(col)] = width; changed(); }
int Grid::ColAlignment(int col) const { checkCol(col); return m_colAlignment[static_cast<std::size_t>(col)]; }
void Grid::setColAlignment(int col, int a) { checkCol(col); m_colAlignment[static_cast<std::size_t>(col)] = a; changed(); }
int Grid::FixedAlignment(int col) const { checkCol(col); return m_fixedAlignment[static_cast<std::size_t>(col)]; }
void Grid::setFixedAlignment(int col, int a) { checkCol(col); m_fixedAlignment[static_cast<std::size_t>(col)] = a; changed(); }

void Grid::userDblClick(int row) {
    requireReachable("double-click");
    if (row < 0 || row >= m_rows)
        throw UserActionRefused(QStringLiteral("cannot double-click row %1 of %2: it has %3 rows").arg(row).arg(key()).arg(m_rows));
    form().moveFocus(this);
    setRow(row);
    Click();
    DblClick();
}

QJsonObject Grid::snapshot() const {
    QJsonObject o = Control::snapshot();
    QJsonArray rows;
    for (int r = 0; r < m_rows; ++r) {
        QJsonArray cells;
        for (int c = 0; c < m_cols; ++c) cells.append(m_cells[static_cast<std::size_t>(r * m_cols + c)]);
        rows.append(cells);
    }
    o[QStringLiteral("cells")] = rows;
    o[QStringLiteral("row")] = m_row;
    o[QStringLiteral("topRow")] = m_topRow;
    return o;
}

} // namespace steplets
