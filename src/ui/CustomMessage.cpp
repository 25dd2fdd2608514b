#include "ui/CustomMessage.h"

#include "base/AdviceMessages.h"
#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/HelpBook.h"
#include "ui/Pictures.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <utility>

#include <wx/artprov.h>
#include <wx/statbmp.h>
#include <wx/statline.h>

namespace tarvin {

namespace {

// In dialog units.
constexpr int widestText = 300;
constexpr int narrowest = 150;

// A text within these bounds is shown whole. Laying out a text takes time that grows with its length, and a label has
// no bound.
constexpr std::size_t mostOfLabel = 600;
constexpr int mostLinesOfLabel = 10;
constexpr std::size_t mostOfCaption = 200;
constexpr std::size_t mostShown = 20'000;

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
        return ButtonsOf(style).size() == 1 ? wxART_INFORMATION : wxART_QUESTION;
    }
}

KelTextView NameOf(const wxArtID& icon) {
    if (icon == wxART_ERROR)
        return text::outlook::bad;
    if (icon == wxART_WARNING)
        return text::outlook::warning;
    return icon == wxART_QUESTION ? text::outlook::question : text::outlook::note;
}

// The start of a text, without half of a pair at its end.
KelTextView StartOf(KelTextView text, std::size_t most) {
    if (text.size() <= most)
        return text;
    text = text.substr(0, most);
    if (IsHighSurrogate(text.back()))
        text.remove_suffix(1);
    return text;
}

// The text with line ends in words that are too long for a line, such as a path: neither a label nor a field is quick
// with a word of many lines. A path breaks behind its separators.
KelText WithBreaks(KelTextView text) {
    constexpr std::size_t longestWord = 60;
    KelText result;
    std::size_t wordLength = 0;
    std::size_t separator = 0; // where the result has the last one of this word; 0 without one
    for (const char16_t unit : text) {
        if (wordLength >= longestWord && !IsLowSurrogate(unit)) {
            const std::size_t at = separator > 0 ? separator + 1 : result.size();
            result.insert(at, 1, u'\n');
            wordLength = result.size() - at - 1;
            separator = 0;
        }
        if (unit == u'/' || unit == u'\\')
            separator = result.size();
        result += unit;
        ++wordLength;
        if (unit == u' ' || unit == u'\n') {
            wordLength = 0;
            separator = 0;
        }
    }
    return result;
}

}

KelText MomentText(const LocalTimeText& time) {
    return time.time + u", " + time.date;
}

CustomMessage::CustomMessage(wxWindow* parent, const MessageBoxText& box, std::function<void()> showHelp,
                             const TextHolder& dictionary)
    : wxDialog(parent, wxID_ANY, ToWx(StartOf(box.caption, mostOfCaption)), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE, "message"),
      box(box) {
    SetIcons(ProgramIcons());
    auto* column = new wxBoxSizer(wxVERTICAL);
    AddMessage(*column);
    AddButtons(*column, dictionary);
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
    Bind(wxEVT_CHAR_HOOK, &CustomMessage::OnCharHook, this);
}

void CustomMessage::OnCharHook(wxKeyEvent& event) {
    // A selection in the long text is copied by the text itself.
    const bool hasSelection = longText != nullptr && longText->HasFocus() && !longText->GetStringSelection().empty();
    if (event.GetKeyCode() == WXK_ESCAPE)
        Finish(answer);
    else if (event.GetModifiers() == wxMOD_CONTROL && event.GetKeyCode() == 'C' && !hasSelection)
        Copy();
    else
        event.Skip();
}

void CustomMessage::ShowCount(int count, const KelText& lastTime) {
    const KelText text = count == 1 ? Filled(text::messageWindow::shownAt, {lastTime})
                                    : Filled(text::dialog::seenAgain, {ToText(count), lastTime});
    moment->SetLabel(ToLabel(text));
    // The box grows with the line, and keeps its place.
    GetSizer()->Fit(this);
    Layout();
}

void CustomMessage::AddMessage(wxSizer& column) {
    const int width = ConvertDialogToPixels(wxSize(widestText, 0)).GetWidth();
    const int gap = FromDIP(12);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const wxSize iconSize = wxArtProvider::GetNativeSizeHint(wxART_MESSAGE_BOX, this);
    const wxArtID icon = IconOf(box.style);
    auto* sign = new wxStaticBitmap(this, wxID_ANY, wxArtProvider::GetBitmapBundle(icon, wxART_MESSAGE_BOX, iconSize));
    NameControl(*sign, ToWx(NameOf(icon)));
    row->Add(sign, wxSizerFlags().Top().Border(wxRIGHT, gap));
    auto* words = new wxBoxSizer(wxVERTICAL);
    const auto add = [&](KelTextView text) {
        auto* label = new wxStaticText(this, wxID_ANY, ToLabel(text));
        words->Add(label, wxSizerFlags().Border(wxBOTTOM, gap / 2));
        return label;
    };
    if (!box.headline.empty()) {
        wxStaticText* headline = add(box.headline);
        constexpr float larger = 1.15f;
        headline->SetFont(headline->GetFont().Bold().Scaled(larger));
        headline->Wrap(width);
    }
    if (!box.advice.empty()) {
        add(box.advice)->Wrap(width);
        words->Add(new wxStaticLine(this), wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, gap / 2));
    }
    AddText(*words);
    moment = add(Filled(text::messageWindow::shownAt, {MomentText(LocalTimeNow())}));
    row->Add(words, wxSizerFlags(1).CenterVertical());
    column.Add(row, wxSizerFlags(1).Expand().Border(wxALL, gap));
}

// A short text is a label, and a long one is a field that scrolls.
void CustomMessage::AddText(wxSizer& column) {
    const int width = ConvertDialogToPixels(wxSize(widestText, 0)).GetWidth();
    const wxSizerFlags flags = wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(6));
    KelText shown = WithBreaks(StartOf(box.text, mostShown));
    if (shown.size() <= mostOfLabel && std::ranges::count(shown, u'\n') < mostLinesOfLabel) {
        auto* label = new wxStaticText(this, wxID_ANY, ToLabel(shown));
        label->Wrap(width);
        column.Add(label, flags);
        return;
    }
    if (box.text.size() > mostShown)
        shown += u"\n" + KelText(text::messageWindow::cutOff);
    longText = new wxTextCtrl(this, wxID_ANY, ToWx(shown), wxDefaultPosition, wxDefaultSize,
                              wxTE_MULTILINE | wxTE_READONLY | wxTE_BESTWRAP | wxBORDER_NONE);
    longText->SetBackgroundColour(GetBackgroundColour());
    NameControl(*longText, ToWx(text::messageWindow::textName));
    longText->SetMinSize(wxSize(width, (mostLinesOfLabel + 1) * longText->GetCharHeight()));
    longText->SetInsertionPoint(0);
    column.Add(longText, flags);
}

void CustomMessage::AddButtons(wxSizer& column, const TextHolder& dictionary) {
    const MessageButton* defaultButton = &ButtonsOf(box.style)[DefaultButtonOf(box.style)];
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    auto* copy = new wxButton(this, wxID_ANY, ToWx(text::messageWindow::copy));
    copy->SetToolTip(ToWx(text::messageWindow::copyTip));
    copy->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Copy(); });
    MakeTouchable(*copy);
    row->Add(copy);
    row->AddStretchSpacer();
    for (const MessageButton& description : ButtonsOf(box.style)) {
        // The first letter is the key: the names of one style begin with different letters.
        auto* button = new wxButton(this, wxID_ANY, "&" + ToLabel(dictionary.Text(description.caption.id)));
        button->SetMinSize(wxSize(ConvertDialogToPixels(wxSize(50, 0)).GetWidth(), -1));
        MakeTouchable(*button);
        button->Bind(wxEVT_BUTTON, [this, chosen = description.answer](wxCommandEvent&) { Finish(chosen); });
        row->Add(button, wxSizerFlags().Border(wxLEFT, FromDIP(8)));
        if (&description == defaultButton) {
            button->SetDefault();
            button->SetFocus();
        }
    }
    column.Add(row, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(12)));
    buttons = row;
}

void CustomMessage::AddButton(KelTextView label, std::function<void()> call) {
    auto* button = new wxButton(this, wxID_ANY, ToWx(label));
    MakeTouchable(*button);
    button->Bind(wxEVT_BUTTON, [kept = std::move(call)](wxCommandEvent&) { kept(); });
    // Behind the button that copies.
    buttons->Insert(1, button, wxSizerFlags().Border(wxLEFT, FromDIP(8)));
    GetSizer()->Fit(this);
}

KelText CustomMessage::WholeText() const {
    KelText whole;
    const KelText time = FromWx(wxControl::RemoveMnemonics(moment->GetLabel()));
    for (const KelText* part : {&box.caption, &box.headline, &box.advice, &box.text, &time}) {
        if (!part->empty())
            whole += *part + u"\n";
    }
    return whole;
}

void CustomMessage::Copy() {
    CopyToClipboard(ToWx(WholeText()));
}

// An owner that runs the dialog in a loop of its own ends that loop when the dialog is hidden.
void CustomMessage::Finish(int newAnswer) {
    answer = newAnswer;
    Hide();
    if (const auto call = std::exchange(onFinished, {}))
        call();
}

}
