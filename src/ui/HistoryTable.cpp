#include "ui/HistoryTable.h"

#include "base/HistoryMessages.h"
#include "history/HistoryTime.h"
#include "history/HistoryWords.h"
#include "ui/Accessibility.h"
#include "ui/BoardContent.h"

#include <utility>

namespace tarvin {

namespace {

struct ColumnDescription {
    NumberedText caption;
    wxAlignment alignment;
    int width; // in dialog units
};

constexpr ColumnDescription columns[] = {
    {text::historyDialog::endColumn, wxALIGN_LEFT, 77},       {text::historyDialog::machineColumn, wxALIGN_LEFT, 50},
    {text::historyDialog::directionColumn, wxALIGN_LEFT, 66}, {text::historyDialog::numberColumn, wxALIGN_LEFT, 44},
    {text::historyDialog::sizeColumn, wxALIGN_RIGHT, 44},     {text::historyDialog::durationColumn, wxALIGN_RIGHT, 40},
    {text::historyDialog::outcomeColumn, wxALIGN_LEFT, 46},   {text::historyDialog::reasonColumn, wxALIGN_LEFT, 150}};

KelText TextOf(const TransferRecord& row, unsigned column) {
    switch (column) {
    case 0:
        return FromUtf8(ToLocalText(row.end));
    case 1:
        return row.machine;
    case 2:
        return row.direction == TransferDirection::ToMachine ? text::historyDialog::toMachine
                                                             : text::historyDialog::fromMachine;
    case 3:
        return row.number;
    case 4:
        return GroupedText(row.byteCount);
    case 5:
        return DurationText(row.end - row.begin);
    case 6:
        return KelText(LabelFor(row.outcome));
    default:
        return row.reason;
    }
}

}

// Only the lines that can be seen are asked for.
class HistoryTable::Model : public wxDataViewVirtualListModel {
public:
    unsigned GetColumnCount() const override { return static_cast<unsigned>(std::size(columns)); }
    wxString GetColumnType(unsigned) const override { return "string"; }
    void GetValueByRow(wxVariant& value, unsigned row, unsigned column) const override {
        value = row < rows.size() ? ToWx(TextOf(rows[row], column)) : wxString();
    }
    bool SetValueByRow(const wxVariant&, unsigned, unsigned) override { return false; }

    void Take(std::vector<TransferRecord> newRows) {
        rows = std::move(newRows);
        Reset(static_cast<unsigned>(rows.size()));
    }
    const std::vector<TransferRecord>& Rows() const { return rows; }

private:
    std::vector<TransferRecord> rows;
};

HistoryTable::HistoryTable(wxWindow* parent)
    : wxDataViewCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxDV_SINGLE | wxDV_ROW_LINES),
      model(new Model) {
    NameControl(*this, ToWx(text::historyDialog::table));
    AssociateModel(model.get());
    for (unsigned index = 0; index < std::size(columns); ++index) {
        const ColumnDescription& column = columns[index];
        const int width = ConvertDialogToPixels(wxSize(column.width, 0)).GetWidth();
        AppendTextColumn(ToWx(column.caption), index, wxDATAVIEW_CELL_INERT, width, column.alignment);
    }
}

void HistoryTable::Show(std::vector<TransferRecord> rows) {
    model->Take(std::move(rows));
    UnselectAll();
}

const TransferRecord* HistoryTable::Selected() const {
    const wxDataViewItem item = GetSelection();
    if (!item.IsOk())
        return nullptr;
    const unsigned row = model->GetRow(item);
    return row < model->Rows().size() ? &model->Rows()[row] : nullptr;
}

}
