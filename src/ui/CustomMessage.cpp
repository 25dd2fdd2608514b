#include "ui/CustomMessage.h"

#include "ui/HelpKey.h"
#include "ui/Pictures.h"
#include "ui/UiText.h"

#include <utility>
#include <vector>

#include <wx/artprov.h>
#include <wx/statbmp.h>

namespace tarvin {

namespace {

constexpr unsigned buttonBits = 0xF;
constexpr unsigned iconBits = 0xF0;
constexpr int widestText = 300; // in dialog units, as is the next
constexpr int narrowest = 150;

struct Choice {
    int answer;
    std::int32_t textId;
};

constexpr Choice ok = {1, 47};
constexpr Choice cancel = {2, 48};
constexpr Choice abort = {3, 4550};
constexpr Choice retry = {4, 3909};
constexpr Choice ignore = {5, 1492};
constexpr Choice yes = {6, 66};
constexpr Choice no = {7, 65};

std::vector<Choice> ChoicesOf(unsigned style) {
    switch (style & buttonBits) {
    case okCancel:
        return {ok, cancel};
    case 2:
        return {abort, retry, ignore};
    case yesNoCancel:
        return {yes, no, cancel};
    case yesNo:
        return {yes, no};
    case 5:
        return {retry, cancel};
    default:
        return {ok};
    }
}

wxArtID IconOf(unsigned style) {
    switch (style & iconBits) {
    case 0x10:
        return wxART_ERROR;
    case 0x20:
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
                             const TextHolder& texts)
    : wxDialog(parent, wxID_ANY, ToWx(box.caption), wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE,
               "message") {
    SetIcons(ProgramIcons());
    auto* column = new wxBoxSizer(wxVERTICAL);
    AddMessage(*column, box);
    AddButtons(*column, box.style, texts);
    if (box.dontShowAgainId) {
        constexpr std::int32_t dontShowAgainText = 6069;
        dontShowAgain = new wxCheckBox(this, wxID_ANY, ToLabel(texts.Text(dontShowAgainText)));
        column->Add(dontShowAgain, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(12)));
    }
    // Wide enough for the caption, which names what went wrong.
    column->SetMinSize(ConvertDialogToPixels(wxSize(narrowest, 0)));
    SetSizerAndFit(column);
    CentreOnParent();
    // The close button and Escape.
    answer = ChoicesOf(box.style).back().answer;
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

void CustomMessage::AddButtons(wxSizer& column, unsigned style, const TextHolder& texts) {
    const std::vector<Choice> choices = ChoicesOf(style);
    std::size_t defaultChoice = (style & defaultButton3) != 0 ? 2 : (style & defaultButton2) != 0 ? 1 : 0;
    if (defaultChoice >= choices.size())
        defaultChoice = 0;
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->AddStretchSpacer();
    for (std::size_t at = 0; at < choices.size(); ++at) {
        const int choice = choices[at].answer;
        // A name may begin with a letter that an earlier one has taken; those of a style never do.
        auto* button = new wxButton(this, wxID_ANY, "&" + ToLabel(texts.Text(choices[at].textId)));
        button->SetMinSize(wxSize(ConvertDialogToPixels(wxSize(50, 0)).GetWidth(), -1));
        button->Bind(wxEVT_BUTTON, [this, choice](wxCommandEvent&) { Finish(choice); });
        row->Add(button, wxSizerFlags().Border(wxLEFT, FromDIP(8)));
        if (at == defaultChoice) {
            button->SetDefault();
            button->SetFocus();
        }
    }
    column.Add(row, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(12)));
}

void CustomMessage::Finish(int newAnswer) {
    answer = newAnswer;
    Hide();
}

}
