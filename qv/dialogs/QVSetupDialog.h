#pragma once
// The setup dialog of a display, built from the published-property registry: a tree of the
// display's settings objects on the left (owned objects and collections with their items),
// an editor of the selected object's published properties on the right. Every settings class
// shows up with no dialog code of its own.
//
// Edits wait in the dialog until Apply or OK. Apply writes them all or none: a value outside
// its limits, or one a setter refuses, is reported with the limit and nothing changes. Undo
// steps back over the last Apply (or collection change); Cancel puts back the settings the
// display had when the dialog opened, applied steps included. Adding or deleting a collection
// item applies waiting edits first and takes effect at once.
//
// A display that hosts other displays as elements shows them under "Elements", and the
// dialog edits, applies and restores their settings together with the host's.

#include "qv/foundation/QLClassInfo.h"
#include "qv/foundation/QLStoredForm.h"

#include <QDialog>
#include <QString>

#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class QVBoxLayout;
class QWidget;

namespace qv {

class TQLPersistent;
class TQLCollection;

class TQVSetupDialog : public QDialog {
    Q_OBJECT
public:
    // ARoot is the display (or any settings object) the dialog edits; it must outlive the
    // dialog.
    explicit TQVSetupDialog(TQLPersistent& ARoot, QWidget* AParent = nullptr);
    ~TQVSetupDialog() override;

    // Shows the page of AObject, or of the nearest owner that has a page; false when none.
    bool SelectObject(const TQLPersistent* AObject);
    // Shows a page by its path from the root: "" (the root), "XAxis.Font", "Channels[1]",
    // "Channels" (the collection's page). False when there is no such page.
    bool SelectPath(const std::string& APath);
    std::string GetSelectedPath() const;
    // The object of the page shown; null on a collection's page.
    TQLPersistent* GetSelectedObject() const;

    // The editor of property AName on the page shown; null when the page has none. Editors
    // are a QCheckBox (booleans), a QComboBox (enumerations), a QWidget of QCheckBoxes (sets)
    // and a QLineEdit for all else (colours as "#AARRGGBB").
    QWidget* FindEditor(const std::string& AName) const;
    // The buttons of the page shown ("Add", "Delete", "Font...", "Color..." of a property
    // as "Color...:Name"), by text; null when absent.
    QPushButton* FindPageButton(const QString& AText) const;

    // Writes the waiting edits, all or none. False (with GetError set and shown) when one is
    // refused; then nothing changed.
    bool Apply();
    // Steps back over the last Apply or collection change; false when there is none.
    bool Undo();
    bool CanUndo() const { return !FUndo.empty(); }
    bool HasPendingEdits() const { return !FPending.empty(); }
    // The last refusal, as shown under the editor; empty when the last step succeeded.
    const QString& GetError() const { return FError; }

    QTreeWidget* GetTree() const { return FTree; }
    QPushButton* GetOkButton() const { return FOk; }
    QPushButton* GetCancelButton() const { return FCancel; }
    QPushButton* GetApplyButton() const { return FApply; }
    QPushButton* GetUndoButton() const { return FUndoButton; }

    // OK: Apply, and close only when it succeeds.
    void accept() override;
    // Cancel: the settings go back to what they were when the dialog opened.
    void reject() override;

private:
    struct TNode {
        TQLPersistent* Object = nullptr;     // an object's page
        TQLCollection* Collection = nullptr; // a collection's page
        int32_t ItemIndex = -1;              // the object is item ItemIndex of Collection
        std::string Path;
    };
    struct TPending {
        TQLPersistent* Object;
        const TQLPropertyInfo* Prop;
        TQLValue Value; // when Error is empty
        QString Text;   // what the editor shows
        QString Error;  // why the text is not a value of the property
    };

    void BuildTree();
    void AddObjectNode(QTreeWidgetItem* AParent, TQLPersistent* AObject, const QString& ALabel,
                       const std::string& APath, TQLCollection* ACollection, int32_t AIndex);
    void ShowPage(int AIndex);
    void AddEditor(TQLPersistent* AObject, const TQLPropertyInfo* AProp);
    void AddFontButton(TQLPersistent* AObject);
    void AddCollectionButtons(const TNode& ANode);
    // Records an edit of AProp of AObject: the editor's text, parsed against the property.
    void SetPending(TQLPersistent* AObject, const TQLPropertyInfo* AProp, const QString& AText);
    void SetPendingValue(TQLPersistent* AObject, const TQLPropertyInfo* AProp, const TQLValue& AValue,
                         const QString& AText);
    const TPending* FindPending(const TQLPersistent* AObject, const TQLPropertyInfo* AProp) const;
    // The value a property shows: waiting or current.
    TQLValue ShownValue(TQLPersistent* AObject, const TQLPropertyInfo* AProp) const;
    // Runs a change of the collections: waiting edits first, then AChange, with an undo step.
    template <class F>
    bool ChangeStructure(F&& AChange, const std::string& ASelectPath);
    // The settings of the root and of every hosted display, in that order.
    using TState = std::vector<TQLStoredNode>;
    TState SaveState() const;
    void Restore(const TState& AState);
    void SetError(const QString& AText);
    void UpdateButtons();

    TQLPersistent& FRoot;
    // The root, then the displays it hosts.
    std::vector<TQLPersistent*> FRoots;
    TState FOpenState;
    std::vector<TState> FUndo;
    std::vector<TPending> FPending;
    std::vector<TNode> FNodes;
    int FPage = -1;
    QString FError;

    QTreeWidget* FTree;
    QWidget* FPageHost;
    QVBoxLayout* FPageLayout;
    QWidget* FPageWidget = nullptr;
    QLabel* FErrorLabel;
    QPushButton* FOk;
    QPushButton* FCancel;
    QPushButton* FApply;
    QPushButton* FUndoButton;
};

// Parses AText as a value of AProp: integers and reals within the property's limits and its
// type's range, colours as "#AARRGGBB" or "#RRGGBB", enumerations by name. Raises
// std::invalid_argument whose message names the property, the text and the limits.
TQLValue QVParsePropertyText(const TQLPropertyInfo& AProp, const QString& AText);
// The text an editor shows for a value of AProp.
QString QVPropertyText(const TQLPropertyInfo& AProp, const TQLValue& AValue);

} // namespace qv
