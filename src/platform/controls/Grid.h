#pragma once
// The results grid: a flat text array of Rows x Cols cells addressed row by row, a current row,
// a top row, column widths and alignments.
#include "Control.h"
#include <QStringList>
#include <vector>

namespace steplets {

class Grid : public Control {
public:
    enum Alignment { AlignLeftTop = 0, AlignLeftCenter = 1, AlignLeftBottom = 2, AlignCenterTop = 3,
                     AlignCenterCenter = 4, AlignCenterBottom = 5, AlignRightTop = 6,
                     AlignRightCenter = 7, AlignRightBottom = 8, AlignGeneral = 9 };

    Grid(Form& form, const QString& name, int index = -1);
    Kind kind() const override { return Kind::Grid; }

    int Cols() const { return m_cols; }
    int Rows() const { return m_rows; }
    // Resizing keeps the cells that stay inside the grid.
    void setCols(int cols);
    void setRows(int rows);
    int FixedRows() const { return m_fixedRows; }
    void setFixedRows(int n);
    int FixedCols() const { return m_fixedCols; }
    void setFixedCols(int n);

    // Cell Cols * row + col; outside the grid is failure 381.
    QString TextArray(long index) const;
    void setTextArray(long index, const QString& text);
    QString TextMatrix(int row, int col) const;
    void setTextMatrix(int row, int col, const QString& text);

    int Row() const { return m_row; }
    void setRow(int row);                  // failure 30009 outside the rows
    int Col() const { return m_col; }
    void setCol(int col);                  // failure 30010 outside the columns
    int TopRow() const { return m_topRow; }
    void setTopRow(int row);               // failure 30009 outside the rows

    int ColWidth(int col) const;
    void setColWidth(int col, int width);
    int ColAlignment(int col) const;
    void setColAlignment(int col, int alignment);
    int FixedAlignment(int col) const;
    void setFixedAlignment(int col, int alignment);
    void Refresh() { changed(); }

    Event<> Click;
    Event<> DblClick;

    // A double click on row `row`: the row becomes current (Click), then DblClick.
    void userDblClick(int row);
    QJsonObject snapshot() const override;

private:
    void resize(int rows, int cols);
    void checkCol(int col) const;
    std::size_t cell(long index) const;

    int m_rows = 2;
    int m_cols = 2;
    int m_fixedRows = 1;
    int m_fixedCols = 1;
    std::vector<QString> m_cells;
    int m_row = 1;
    int m_col = 1;
    int m_topRow = 1;
    std::vector<int> m_colWidth;
    std::vector<int> m_colAlignment;
    std::vector<int> m_fixedAlignment;
};

} // namespace steplets
