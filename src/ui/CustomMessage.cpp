#include "ui/CustomMessage.h"

#include "base/WindowMessages.h"
#include "ui/HelpBook.h"
#include "ui/Pictures.h"

#include <utility>

#include <wx/artprov.h>
#include <wx/statbmp.h>

namespace tarvin {

namespace {

// In dialog units.
constexpr int widestText = 300;
constexpr int narrowest = 150;

wxArtID IconOf(unsigned style) {
    switch (style & iconMask) {
    case iconError:
        return wxART_ERROR;
    case iconQuestion:
        return wxART_QUESTION;
    case iconExclamation:
        return wxART_WARNING;
    case iconInformation:
        return wxART_INFORMATION;
    default:
        return {};
    }
}

}

CustomMessage::CustomMessage(wxWindow* parent, const MessageBoxText& box, std::function<void()> showHelp,
                             const TextHolder& dictionary)
    : wxDialog(parent, wxID_ANY, ToWx(box.caption), wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE,
               "message") {
    SetIcons(ProgramIcons());
    auto* column = new wxBoxSizer(wxVERTICAL);
    AddMessage(*column, box);
    repeats = new wxStaticText(this, wxID_ANY, "");
    repeats->Hide();
    column->Add(repeats, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(12)));
    AddButtons(*column, box.style, dictionary);
    if (box.dontShowAgainId) {
        const KelTextView label = dictionary.Text(text::dictionary::dontShowAgain.id);
        dontShowAgain = new wxCheckBox(this, wxID_ANY, ToLabel(label));
        column->Add(dontShowAgain, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(12)));
    }
    // Wide enough for the caption of most boxes, which names what has failed.
    column->SetMinSize(ConvertDialogToPixels(wxSize(narrowest, 0)));
    SetSizerAndFit(column);
    CentreOnParent();
    // For the close button and Escape.
    answer = ButtonsOf(box.style).back().answer;
    SetEscapeId(wxID_NONE);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Finish(answer); });
    BindHelpKey(*this, std::move(showHelp));
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_ESCAPE)
            Finish(answer);
        else
            event.Skip();
    });
}

void CustomMessage::CountAgain(const KelText& time) {
    ++count;
    repeats->SetLabel(ToLabel(Filled(text::dialog::seenAgain, {ToText(count), time})));
    repeats->Show();
    // The box grows when the line appears, and keeps its place.
    GetSizer()->Fit(this);
    Layout();
}

void CustomMessage::AddMessage(wxSizer& column, const MessageBoxText& box) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const wxArtID icon = IconOf(box.style);
    if (!icon.empty()) {
        const wxSize iconSize = wxArtProvider::GetNativeSizeHint(wxART_MESSAGE_BOX, this);
        auto* image =
            new wxStaticBitmap(this, wxID_ANY, wxArtProvider::GetBitmapBundle(icon, wxART_MESSAGE_BOX, iconSize));
        row->Add(image, wxSizerFlags().Top().Border(wxRIGHT, FromDIP(12)));
    }
    auto* text = new wxStaticText(this, wxID_ANY, ToLabel(box.text));
    text->Wrap(ConvertDialogToPixels(wxSize(widestText, 0)).GetWidth());
    row->Add(text, wxSizerFlags(1).CenterVertical());
    column.Add(row, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(12)));
}

void CustomMessage::AddButtons(wxSizer& column, unsigned style, const TextHolder& dictionary) {
    const MessageButton* defaultButton = &ButtonsOf(style)[DefaultButtonOf(style)];
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->AddStretchSpacer();
    for (const MessageButton& description : ButtonsOf(style)) {
        // The first letter is the key: the names of one style begin with different letters.
        auto* button = new wxButton(this, wxID_ANY, "&" + ToLabel(dictionary.Text(description.caption.id)));
        button->SetMinSize(wxSize(ConvertDialogToPixels(wxSize(50, 0)).GetWidth(), -1));
        button->Bind(wxEVT_BUTTON, [this, chosen = description.answer](wxCommandEvent&) { Finish(chosen); });
        row->Add(button, wxSizerFlags().Border(wxLEFT, FromDIP(8)));
        if (&description == defaultButton) {
            button->SetDefault();
            button->SetFocus();
        }
    }
    column.Add(row, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(12)));
}

// The owner runs the dialog in a loop of its own, which ends when the dialog is hidden.
void CustomMessage::Finish(int newAnswer) {
    answer = newAnswer;
    Hide();
}

}
