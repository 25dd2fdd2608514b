#include "ui/NcFolderDialog.h"

#include "base/MoreMessages.h"
#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/BoardContent.h"
#include "ui/HelpBook.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <utility>

#include <wx/dataview.h>

namespace tarvin {

namespace {

// Only the rows on the screen are asked for, so a folder of a hundred thousand files costs nothing.
class FolderModel : public wxDataViewVirtualListModel {
public:
    unsigned GetColumnCount() const override { return 5; }
    wxString GetColumnType(unsigned) const override { return "string"; }
    bool SetValueByRow(const wxVariant&, unsigned, unsigned) override { return false; }
    void GetValueByRow(wxVariant& value, unsigned row, unsigned column) const override {
        value = row < rows.size() ? TextOf(*rows[row], column) : wxString();
    }

    void Take(std::vector<const NcFolderEntry*> newRows) {
        rows = std::move(newRows);
        Reset(static_cast<unsigned>(rows.size()));
    }

private:
    static wxString TextOf(const NcFolderEntry& entry, unsigned column) {
        switch (column) {
        case 0:
            return ToWx(entry.number);
        case 1:
            return ToWx(entry.comment);
        case 2:
            return ToWx(GroupedText(static_cast<std::int64_t>(entry.size)));
        case 3:
            return wxDateTime(std::chrono::system_clock::to_time_t(entry.changed)).Format("%Y-%m-%d %H:%M");
        default:
            return entry.isIncomplete ? ToWx(text::more::incomplete) : wxString();
        }
    }

    std::vector<const NcFolderEntry*> rows;
};

}

// A table of the system on Linux, whose rows a screen reader can read.
class NcFolderList : public wxDataViewCtrl {
public:
    explicit NcFolderList(wxWindow* parent)
        : wxDataViewCtrl(parent, wxID_ANY, wxDefaultPosition, parent->FromDIP(wxSize(700, 320)), wxDV_SINGLE),
          model(new FolderModel) {
        NameControl(*this, ToWx(text::more::filesCaption));
        SetMinSize(FromDIP(wxSize(700, 320)));
        AssociateModel(model.get());
        const std::pair<KelTextView, int> columns[] = {{text::more::number, 110},
                                                       {text::more::comment, 240},
                                                       {text::more::size, 90},
                                                       {text::more::changed, 130},
                                                       {text::more::note, 90}};
        unsigned index = 0;
        for (const auto& [caption, width] : columns)
            AppendTextColumn(ToWx(caption), index++, wxDATAVIEW_CELL_INERT, FromDIP(width),
                             caption == text::more::size ? wxALIGN_RIGHT : wxALIGN_LEFT);
    }

    void ShowRows(std::vector<const NcFolderEntry*> rows) { model->Take(std::move(rows)); }

private:
    wxObjectDataPtr<FolderModel> model;
};

NcFolderDialog::NcFolderDialog(wxWindow* parent, KelText folder, KelText extension, std::function<void()> showHelp)
    : wxDialog(parent, wxID_ANY, ToWx(text::more::filesCaption), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxMAXIMIZE_BOX, "NC Folder"),
      folder(std::move(folder)),
      extension(std::move(extension)),
      filter(new wxTextCtrl(this, wxID_ANY)),
      list(new NcFolderList(this)),
      note(new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxST_ELLIPSIZE_MIDDLE)) {
    const int gap = FromDIP(6);
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(new wxStaticText(this, wxID_ANY, ToLabel(Filled(text::more::filesIn, {this->folder})), wxDefaultPosition,
                              wxDefaultSize, wxST_ELLIPSIZE_MIDDLE),
             wxSizerFlags().Expand().Border(wxALL, gap));
    auto* search = new wxBoxSizer(wxHORIZONTAL);
    search->Add(new wxStaticText(this, wxID_ANY, ToWx(text::more::filter)), wxSizerFlags().CenterVertical());
    NameControl(*filter, wxControl::RemoveMnemonics(ToWx(text::more::filter)));
    search->Add(filter, wxSizerFlags(1).Border(wxLEFT, gap));
    all->Add(search, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    all->Add(list, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, gap));
    auto* foot = new wxBoxSizer(wxHORIZONTAL);
    foot->Add(note, wxSizerFlags(1).CenterVertical());
    auto* refresh = new wxButton(this, wxID_REFRESH, ToWx(text::more::readAgain));
    auto* close = new wxButton(this, wxID_CANCEL, ToWx(text::label::close));
    for (wxButton* button : {refresh, close}) {
        MakeTouchable(*button);
        foot->Add(button, wxSizerFlags().Border(wxLEFT, gap));
    }
    all->Add(foot, wxSizerFlags().Expand().Border(wxALL, gap));
    SetSizerAndFit(all);
    CentreOnParent();
    filter->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { ShowMatches(); });
    refresh->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Read(); });
    const auto finish = [this] {
        SetReturnCode(wxID_CANCEL);
        Hide();
    };
    close->Bind(wxEVT_BUTTON, [finish](wxCommandEvent&) { finish(); });
    Bind(wxEVT_CLOSE_WINDOW, [finish](wxCloseEvent&) { finish(); });
    BindHelpKey(*this, std::move(showHelp));
    filter->SetFocus();
    Read();
}

void NcFolderDialog::Read() {
    note->SetLabel(ToWx(text::more::reading));
    reading.Start([read = folder,
                   ending = extension](BackgroundWork<Entries>::Stop stop) { return ListNcFolder(read, ending, stop); },
                  [this](Entries found) { OnRead(std::move(found)); });
}

void NcFolderDialog::OnRead(Entries found) {
    if (!found) {
        entries.clear();
        ShowMatches();
        note->SetLabel(wxControl::EscapeMnemonics(ToWx(found.Reason().text)));
        return;
    }
    entries = std::move(*found);
    ShowMatches();
}

void NcFolderDialog::ShowMatches() {
    const wxString wanted = filter->GetValue().Lower();
    std::vector<const NcFolderEntry*> matches;
    for (const NcFolderEntry& entry : entries) {
        if (wanted.empty() || ToWx(entry.number).Lower().Contains(wanted) ||
            ToWx(entry.comment).Lower().Contains(wanted))
            matches.push_back(&entry);
    }
    note->SetLabel(ToWx(Filled(text::more::fileCount, {GroupedText(static_cast<std::int64_t>(matches.size()))})));
    list->ShowRows(std::move(matches));
}

}
