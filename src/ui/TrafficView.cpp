#include "ui/TrafficView.h"

#include "base/TrafficMessages.h"
#include "base/WindowMessages.h"
#include "ui/TrafficFile.h"

#include <cassert>
#include <utility>

namespace tarvin {

namespace {

wxMenuItem* AddItem(wxMenu& menu, KelTextView label, wxItemKind kind, std::function<void()> action) {
    wxMenuItem* item = menu.Append(wxID_ANY, ToWx(label), wxString(), kind);
    menu.Bind(
        wxEVT_MENU, [kept = std::move(action)](wxCommandEvent&) { kept(); }, item->GetId());
    return item;
}

}

TrafficView::TrafficView(wxWindow* parent)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "traffic view"),
      pane(new TextPane(this)) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(pane, wxSizerFlags(1).Expand());
    SetSizer(column);
    pane->SetGutter(RememberedGutter());
    pane->WhenFollowingChanges([this] { ShowFollowMark(); });
}

void TrafficView::AppendTo(wxMenu& menu) {
    const bool hasLines = pane->Lines().Count() > 0;
    const auto add = [&menu](KelTextView label, bool isEnabled, std::function<void()> action) {
        AddItem(menu, label, wxITEM_NORMAL, std::move(action))->Enable(isEnabled);
    };
    add(text::menu::copy, pane->HasSelection(), [this] { pane->Copy(); });
    add(text::menu::selectAll, hasLines, [this] { pane->SelectAll(); });
    add(text::menu::clear, hasLines, [this] { pane->Clear(); });
    add(text::menu::followEnd, !pane->IsFollowing(), [this] { pane->Follow(); });
    menu.AppendSeparator();
    add(text::trafficMenu::find, true, [this] { OpenFind(); });
    add(text::trafficMenu::findNext, IsFindOpen(), [this] { FindNext(true); });
    AppendGutters(menu);
    add(text::trafficMenu::saveAs, hasLines, [this] { Save(); });
}

void TrafficView::AppendGutters(wxMenu& menu) {
    auto* gutters = new wxMenu;
    const std::pair<Gutter, KelTextView> choices[] = {{Gutter::Off, text::trafficMenu::gutterOff},
                                                      {Gutter::TimeOfDay, text::trafficMenu::timeOfDay},
                                                      {Gutter::SinceLast, text::trafficMenu::sinceLast}};
    for (const auto& [gutter, label] : choices)
        AddItem(*gutters, label, wxITEM_RADIO, [this, chosen = gutter] {
            ChooseGutter(chosen);
        })->Check(gutter == pane->ShownGutter());
    menu.AppendSubMenu(gutters, ToWx(text::trafficMenu::gutter));
}

void TrafficView::ChooseGutter(Gutter gutter) {
    pane->SetGutter(gutter);
    RememberGutter(gutter);
}

void TrafficView::Save() {
    assert(owner.loop != nullptr && owner.tell);
    // The lines that the user sees now, whatever comes while the dialog is open.
    const std::string lines = pane->AllText();
    if (const auto failure = SaveTraffic(wxGetTopLevelParent(this), *owner.loop, lines))
        owner.tell(*failure);
}

bool TrafficView::HandleKey(const wxKeyEvent& event) {
    if (event.GetKeyCode() == 'F' && event.GetModifiers() == wxMOD_CONTROL) {
        OpenFind();
        return true;
    }
    if (event.GetKeyCode() == WXK_F3 && (event.GetModifiers() & ~wxMOD_SHIFT) == 0) {
        FindNext(!event.ShiftDown());
        return true;
    }
    return false;
}

void TrafficView::OpenFind() {
    if (findBar == nullptr) {
        findBar = new FindBar(this, {[this] { Search(true, true); }, [this](bool isForward) { FindNext(isForward); },
                                     [this] { CloseFind(); }});
        GetSizer()->Insert(0, findBar, wxSizerFlags().Expand());
        findBar->MoveBeforeInTabOrder(pane);
    }
    findBar->Show();
    Layout();
    pane->Highlight(TextSearch(findBar->Wanted()));
    findBar->TakeFocus();
}

void TrafficView::CloseFind() {
    if (!IsFindOpen())
        return;
    // The keyboard goes to the pane: a hidden control must not keep it.
    pane->SetFocus();
    findBar->Hide();
    pane->Highlight({});
    Layout();
}

void TrafficView::FindNext(bool isForward) {
    if (IsFindOpen())
        Search(isForward, false);
    else
        OpenFind();
}

// While the user types, the present place stays if it still fits.
void TrafficView::Search(bool isForward, bool isTyping) {
    const TextSearch search(findBar->Wanted());
    pane->Highlight(search);
    if (search.IsEmpty()) {
        findBar->ShowResult({});
        return;
    }
    const TextLines::Position start = pane->SelectionStart();
    const auto place = !isForward ? search.Previous(pane->Lines(), start)
                                  : search.Next(pane->Lines(), isTyping ? start : pane->SelectionEnd());
    if (!place) {
        findBar->ShowResult(ToWx(text::traffic::notFound));
        return;
    }
    pane->ShowPlace(*place);
    const KelTextView wrapped = isForward ? text::traffic::wrappedToStart : text::traffic::wrappedToEnd;
    findBar->ShowResult(place->hasWrapped ? ToWx(wrapped) : wxString());
}

wxWindow* TrafficView::MakeFollowMark() {
    auto* mark = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "follow mark");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const int gap = FromDIP(4);
    auto* label = new wxStaticText(mark, wxID_ANY, ToWx(text::traffic::followingIsOff), wxDefaultPosition,
                                   wxDefaultSize, wxST_ELLIPSIZE_END);
    label->SetMinSize(wxSize(1, -1));
    row->Add(label, wxSizerFlags(1).CenterVertical().Border(wxALL, gap));
    auto* follow = new wxButton(mark, wxID_ANY, ToLabel(text::traffic::follow));
    follow->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        // Before the button is hidden.
        pane->SetFocus();
        pane->Follow();
    });
    row->Add(follow, wxSizerFlags().CenterVertical().Border(wxALL, gap));
    mark->SetSizer(row);
    GetSizer()->Add(mark, wxSizerFlags().Expand());
    return mark;
}

void TrafficView::ShowFollowMark() {
    const bool isWanted = !pane->IsFollowing();
    if (followMark == nullptr && isWanted)
        followMark = MakeFollowMark();
    if (followMark != nullptr)
        followMark->Show(isWanted);
    Layout();
}

}
