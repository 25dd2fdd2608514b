#include "ui/StatusLine.h"

#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/Pictures.h"
#include "ui/StatusShortening.h"

#include <algorithm>
#include <string_view>

namespace tarvin {

namespace {

// In the order of Outlook.
constexpr std::string_view signs[] = {"outlook-idle.svg", "outlook-busy.svg", "outlook-good.svg", "outlook-bad.svg"};

constexpr NumberedText signNames[] = {text::outlook::idle, text::outlook::busy, text::outlook::good,
                                      text::outlook::bad};

// Relative to the font of the window, the largest first.
constexpr double fontScales[] = {1.7, 1.5, 1.3, 1.15, 1.0};

}

Outlook OutlookOf(const EngineSnapshot& snapshot) {
    // A lost link matters more than the last transfer.
    if (!snapshot.hasLink)
        return Outlook::Bad;
    switch (snapshot.transferState) {
    case TransferState::DownloadWaiting:
    case TransferState::DownloadRequested:
    case TransferState::UploadRequested:
    case TransferState::DownloadPreparation:
    case TransferState::UploadPreparation:
    case TransferState::Downloading:
    case TransferState::Uploading:
    case TransferState::AutoloadCutting:
    case TransferState::FileListRequest:
    case TransferState::FileListCompare:
    case TransferState::FileRequest:
        return Outlook::Busy;
    case TransferState::DownloadCompleted:
    case TransferState::UploadCompleted:
    case TransferState::ServerFoundClient:
    case TransferState::ClientFoundServer:
    case TransferState::SynchronisationCompleted:
        return Outlook::Good;
    case TransferState::NoLink:
    case TransferState::DownloadCouldNotOpen:
    case TransferState::UploadCouldNotOpen:
    case TransferState::DownloadErrors:
    case TransferState::UploadErrors:
    case TransferState::LoopbackFailure:
    case TransferState::DirectoryError:
    case TransferState::Overrun:
    case TransferState::UnexpectedError:
    case TransferState::FileFormatError:
    case TransferState::ItemNotFound:
    case TransferState::ServerCannotFindClient:
    case TransferState::ClientCannotFindServer:
    case TransferState::SecondClient:
    case TransferState::SecondServer:
        return Outlook::Bad;
    // A test says nothing about a file, and the board may still show one that has failed.
    case TransferState::LinkTest:
    case TransferState::LoopbackSuccess:
    case TransferState::Waiting:
    case TransferState::DirectoryListing:
    case TransferState::ControllerOption:
    case TransferState::DownloadCancelled:
    case TransferState::UploadCancelled:
    case TransferState::ReportOnly:
        return Outlook::Idle;
    }
    return Outlook::Idle;
}

// The line quality leaves its room to the counters of a running transfer and to the reason of a failure. Board, history
// and logs have it in each state.
KelText StatusText(const EngineSnapshot& snapshot) {
    const bool hasFailed = snapshot.transferState == TransferState::DownloadErrors ||
                           snapshot.transferState == TransferState::UploadErrors;
    const bool isQualityShown = !snapshot.progress && !hasFailed && !snapshot.quality.IsClean();
    KelText text = snapshot.statusLine;
    for (const KelText& beside :
         {snapshot.notice, snapshot.announcement, isQualityShown ? DescribeQuality(snapshot.quality) : KelText()}) {
        if (!beside.empty())
            text += u" - " + beside;
    }
    return text;
}

StatusLine::StatusLine(wxWindow* parent, const wxSize& size)
    : PassivePanel(parent, size, wxBORDER_SUNKEN, "status line") {
    SetMinSize(size);
    const int edge = size.GetHeight() * 7 / 10;
    sign = new wxStaticBitmap(this, wxID_ANY, Picture(signs[0], ToDIP(wxSize(edge, edge))), wxDefaultPosition,
                              wxSize(edge, edge));
    label =
        new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(sign, wxSizerFlags().CenterVertical().Border(wxLEFT | wxRIGHT, FromDIP(4)));
    row->Add(label, wxSizerFlags(1).CenterVertical().Border(wxRIGHT, FromDIP(3)));
    SetSizer(row);
    ShowSign();
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        Layout();
        FitText();
    });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        ShowSign();
        event.Skip();
    });
}

void StatusLine::ShowStatus(const wxString& text, Outlook newOutlook) {
    if (newOutlook != outlook) {
        outlook = newOutlook;
        ShowSign();
    }
    if (text == shownText)
        return;
    shownText = text;
    FitText();
}

void StatusLine::ShowSign() {
    sign->SetBitmap(Picture(signs[static_cast<std::size_t>(outlook)], ToDIP(sign->GetMinSize())));
    NameControl(*sign, ToWx(signNames[static_cast<std::size_t>(outlook)]));
}

void StatusLine::FitText() {
    const int width = label->GetSize().GetWidth();
    if (width == fittedWidth && shownText == fittedText)
        return;
    fittedWidth = width;
    fittedText = shownText;
    const wxFont usual = GetFont();
    wxFont chosen = usual;
    const auto fits = [&](const wxString& text) {
        int textWidth = 0;
        GetTextExtent(text, &textWidth, nullptr, nullptr, nullptr, &chosen);
        return textWidth <= width;
    };
    // The last scale stays for a text that is too long for the box.
    for (const double scale : fontScales) {
        chosen = usual.Scaled(static_cast<float>(scale));
        if (fits(shownText))
            break;
    }
    const wxString fitting = wxControl::EscapeMnemonics(ShortenStatus(shownText, fits));
    if (fitting != label->GetLabel())
        label->SetLabel(fitting);
    if (chosen != label->GetFont()) {
        label->SetFont(chosen);
        // Without wxST_NO_AUTORESIZE a label would also change its width; with it, its height has to be set by hand.
        int height = 0;
        GetTextExtent("Ag", nullptr, &height, nullptr, nullptr, &chosen);
        label->SetMinSize(wxSize(-1, height));
        Layout();
    }
    SetToolTip(shownText);
    label->SetToolTip(shownText);
    // The label itself may say less, for want of room.
    tarvin::SetAccessible(*this, AccessibleRole::Pane, wxControl::RemoveMnemonics(ToWx(text::label::status)),
                          shownText);
    NameControl(*label, shownText);
}

}
