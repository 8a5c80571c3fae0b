#pragma once
// The options dialog: eleven pages ("General", "Player", "Output", "Playlist",
// "Strings", "Input", "Visualization", "Digital Signal Processing (DSP)", "General
// Purpose", "Internet", "Appearance"), chosen from a list. Apply (and OK) changes the
// settings through the player with every page's values: the player makes what changes at
// once, saves them and redraws.
#include <QDialog>
#include <vector>

class QListWidget;
class QStackedWidget;

namespace verdin {

class OptionsPage;
class Player;

class OptionsDialog : public QDialog {
    Q_OBJECT
public:
    // Opens on the page of that title (the first when empty or unknown).
    OptionsDialog(QWidget* parent, Player& player, const QString& page = {});

    const std::vector<OptionsPage*>& Pages() const { return pages_; }
    OptionsPage* Page(const QString& title) const;
    template <typename PageType>
    PageType* PageOf() const {
        for (OptionsPage* page : pages_)
            if (auto* typed = qobject_cast<PageType*>(page)) return typed;
        return nullptr;
    }
    void ShowPage(const QString& title);
    OptionsPage* CurrentPage() const;

    // Returns whether the settings could be saved.
    bool Apply();
    void accept() override;

private:
    Player& player_;
    QListWidget* index_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    std::vector<OptionsPage*> pages_;
};

}  // namespace verdin
