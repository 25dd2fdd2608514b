#pragma once
// The rows of the history as a table, one line for each. User-interface thread.

#include "logging/TransferRecord.h"
#include "ui/Wx.h"

#include <vector>

#include <wx/dataview.h>

namespace tarvin {

class HistoryTable : public wxDataViewCtrl {
public:
    explicit HistoryTable(wxWindow* parent);

    // Shows these rows from the first one on. The selection goes.
    void Show(std::vector<TransferRecord> rows);
    // The selected row. Null without one; valid until the next Show.
    const TransferRecord* Selected() const;

private:
    class Model;

    using wxDataViewCtrl::Show;

    wxObjectDataPtr<Model> model;
};

}
