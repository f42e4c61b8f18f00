#pragma once
// ISService: fills a host's controls from data and reads forms back into field collections.
// It owns no data: the host sets its data-access object (Ex) and hands controls and rows in on
// each call. Every control and the data-access object are reached late-bound, by the member
// names host controls answer to, so the same code drives real controls through IDispatch and
// test doubles natively.

#include <optional>
#include <string>
#include <vector>

#include "automation/component.hpp"
#include "automation/late_binding.hpp"
#include "automation/variant.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "services/ISService.gen.hpp"

namespace celdo::services {

class Clipboard;

// The platform's standard picture loader, as LoadPicture: the picture a file holds, or an empty
// picture for the empty name. The COM layer installs the platform's when it loads; until then
// (and on platforms without one) a file is never a picture: error 481, invalid picture.
using PictureLoader = automation::Variant (*)(const std::u16string& file);
void install_picture_loader(PictureLoader loader) noexcept;

class ISService final : public automation::Declared<ISService> {
public:
    using Variant = automation::Variant;
    using Object = automation::Ref<automation::Object>;
    using Fields = automation::Ref<collections::clsCeldos>;
    using Field = automation::Ref<fields::clsCeldo>;

    ISService();

    // ---- Published ---------------------------------------------------------------------------

    // The object and its helpers.
    void set_Ex(Object value) { ex_ = std::move(value); }
    int32_t get_CellBackColor() const { return cell_back_color_; }
    void let_CellBackColor(int32_t value) { cell_back_color_ = value; }
    int32_t get_ForeColor() const { return fore_color_; }
    void let_ForeColor(int32_t value) { fore_color_ = value; }
    int32_t get_BackColor() const { return back_color_; }
    void let_BackColor(int32_t value) { back_color_ = value; }
    std::u16string get_CustomFormat() const;
    Variant nvl(const Variant& varValue, const Variant& varDefault) const;
    std::u16string BuildFormat(const Variant& vData, const std::u16string& vFormat) const;
    Variant MoveSpin(const Variant& Valor, const Variant& LimInf, const Variant& LimSub, const Variant& Incremento) const;
    void FindItemData(int32_t vlngID, Object& rctrCombo) const;
    void FindListIndex(const std::u16string& vstrID, Object& rctrCombo) const;
    std::u16string LetTag(const std::u16string& vstrTag, uint8_t vbytIndice, const std::u16string& vstrNewValue) const;
    std::u16string GetTag(const std::u16string& vstrTag, uint8_t vbytIndice) const;
    bool IsControl(Variant& ctrControl) const;

    // Tree views.
    Object AddNode(Object& rtvwTree, const std::u16string& vstrParent, const std::u16string& vstrClave,
                   const std::u16string& vstrText, const Variant& vImage, const Variant& vSelImage,
                   const std::u16string& oTag);
    Object AddRootNode(Object& rtvwTree, const std::u16string& vstrClave, const std::u16string& vstrText,
                       const Variant& vImage, const Variant& vSelImage, const std::u16string& oTag);
    void ExecFillTreeView(Object& rtvwTree, const std::u16string& vstrQuery, fields::exTypeRs Mode,
                          const Variant& Imagen, const Variant& ImagenSelect, Fields& oarrParametros);
    void FillTreeView(Object& rtvwTree, const Variant& vData, const Variant& Imagen, const Variant& ImagenSelect,
                      const std::u16string& vstrParent);
    Variant GetNodes(Object rtvwTree, bool obolChecked);

    // Forms.
    void FillForm(Object& rfrm, Fields& objCeldos, const std::u16string& ClassName, bool Refresh);
    void PaintForm(Object& rfrm);
    void FillCeldosForm(Object& rfrm, Fields& objCeldos, const std::u16string& ClassName);

    // Flex grids.
    Variant RemoveFlexItem(Object rFlexGrid, int32_t vRow);
    Variant AddFlexItem(Object rFlexGrid, const Variant& vData, Fields& oFormat, int32_t& Index);
    Variant FlexItemUpdateRow(Object rdbgSource, int32_t vRow, const Variant& vData, Fields& rHeader);
    void ExecFillFlexGrid(Object rdbgSource, const std::u16string& vstrQuery, fields::exTypeRs Mode, int16_t Opciones,
                          Fields& oarrParametros, int32_t MaxRows, Fields oHeader);
    void FillFlexGrid(Object rdbgSource, Variant& vData, Fields& rHeader);
    void FlexGridHeader(Object& rdbgSource, const Variant& vHeader);
    void FlexGridClipBoard(Object rdbgSource);
    void ExecFillFlexGridTree(Object rdbgSource, const std::u16string& vstrQuery, fields::exTypeRs Mode,
                              Fields& oarrParametros, Fields oHeader);
    void FillFlexGridTree(Object rdbgSource, Variant& vData, Fields& rHeader);

    // List views and data grids.
    void AddListItem(Object& rlstView, const std::u16string& vstrClave, const Variant& vIcon, const Variant& vSmallIcon,
                     const std::u16string& vstrInfo, const std::u16string& Separador, const std::u16string& oTag);
    void ExecFillListView(Object& rlstView, int16_t vintList, const std::u16string& vstrQuery, fields::exTypeRs Mode,
                          int16_t Opciones, const std::u16string& Separador, Fields& oarrParametros,
                          int32_t& olngMaxRows, bool obolKey, bool oPersintente);
    void FillListView(Object& rlstView, int16_t vintList, const Variant& Datos, Fields colCeldos,
                      const std::u16string& Separador, bool obolKey, bool oPersintente);
    void DBGridColumnHeaders(Object rdbgSource, Object& vcolHeaders);
    void ListViewColumnHeaders(Object& rlstView, Variant& vHeader, bool obolKey);
    void ListViewColumnClick(Object rlst, Object ColumnHeader);

    // Lists, combos and image combos.
    void ExecFillListDB(Object& rlstList, const std::u16string& vstrQuery, Variant& aParametros);
    void FillListDB(Object rlstList, const Variant& Registros);
    Variant FindRowSource(Field objCeldo, const Variant& RowSource);
    void FillImageCombo(Object rlstList, const Variant& Registros, bool obolKey);
    void AddComboItem(Object rlstCombo, const std::u16string& vstrClave, const std::u16string& vstrInfo,
                      const Variant& vImage, const Variant& vSelImage, const std::u16string& oTag);

    // Toolbars.
    void FillToolBar(Object& rlstList, const Variant& Registros, bool obolKey);
    void AddButtonItem(Object rlstCombo, const std::u16string& vstrClave, const std::u16string& vstrInfo,
                       const Variant& vImage, const std::u16string& vToolTip, const std::u16string& oTag);
    void FillButtonMenus(Object rlstList, Variant& Index, const Variant& Registros, bool obolKey);
    void AddButtonMenuItem(Object rlstCombo, Variant& Index, const std::u16string& vstrClave,
                           const std::u16string& vstrInfo);

    // Transfers between grids and list views.
    void SawpGridListView(int16_t& vIndex, Object rdbgSource, Object rlstTarget, const std::u16string& Separador);
    void SawpListViewGrid(Object& vItem, Object rlstSource, Object rdbgTarget, const std::u16string& Separador);
    void SawpListView(Object& vItem, Object rlstSource, Object rlstTarget, const std::u16string& Separador);
    void ExecFillGrid(Object rdbgSource, const std::u16string& vstrQuery, int16_t Mode, int16_t Opciones,
                      const std::u16string& Separador, Fields& oarrParametros);
    void FillGrid(Object rdbgSource, const Variant& vData, const std::u16string& Separador);

    // ---- For the library only ----------------------------------------------------------------

    // Where FlexGridClipBoard puts its text; the platform's clipboard unless a test gives another.
    void use_clipboard(Clipboard& clipboard) noexcept { clipboard_ = &clipboard; }
    // How FillForm loads a picture; the installed loader unless a test gives another.
    void use_pictures(PictureLoader loader) noexcept;

    void visit_references(automation::ReferenceVisitor& visitor) const override {
        if (ex_) visitor.visit(ex_.get());
    }
    void drop_references() override { ex_ = nullptr; }

private:
    // The data-access object's ExecFillArray in its seven-argument form, as the list view and
    // flex grid fills call it: the data array; `header`, `parameters` and `max_rows` receive
    // what the host leaves in them.
    Variant fetch(const std::u16string& query, fields::exTypeRs mode, int32_t& status, Fields& header,
                  int16_t options, Fields& parameters, int32_t& max_rows) const;
    bool connected() const;
    void fill_list_array(Object& view, int16_t list, const Variant& data, const Fields& header,
                         const std::u16string& separator, bool key);
    void fill_list_objects(Object& view, int16_t list, const Variant& data, const Fields& header,
                           const std::u16string& separator, bool key);
    void fill_grid_matrix(automation::LateBound& grid, automation::Array& cells, const Fields& header);
    void fill_grid_rows(automation::LateBound& grid, const Variant& rows, const Fields& header);
    void band_row(automation::LateBound& grid, int32_t row, int32_t fixed_rows, int32_t fixed_cols, int32_t cols);
    // What every flex grid fill does first (redraw off, the grid's colours) and last.
    void open_grid_fill(automation::LateBound& grid);
    void close_grid_fill(automation::LateBound& grid);

    // ExecFillArray in its short form: the query, the open mode, the status and `header`, and
    // with `parameters` an omitted fifth argument and the parameters (written back). The data
    // array, or nothing when the status is negative; `header_back` receives what the host left
    // in the header.
    std::optional<Variant> fetch_short(const std::u16string& query, int32_t mode, Variant header, Variant* parameters,
                                       Fields* header_back) const;
    // The short form as lists and toolbars call it: opened static, with a new field collection.
    std::optional<Variant> query_rows(const std::u16string& query, Variant* parameters) const;
    // A text with the host's expressions replaced (Evaluador.ReplaceExpresion, naming the
    // fields of `row`); as it stands when the service has no data-access object.
    Variant expand(const std::u16string& text, const Fields& row) const;
    // A field's row source as a data array: a query through the host's GetArray, a value list
    // through the field's GetRowSource.
    Variant row_source_rows(fields::clsCeldo& field, const Fields& row) const;
    Variant find_row_source(fields::clsCeldo& field, const Variant& rows, const Fields& row) const;
    std::optional<Variant> element_rows(const Variant& registros, bool expanded) const;

    // A form control bound to a field of a row.
    struct Bound;
    std::optional<Bound> bind(Variant& control, const Fields& row, const std::u16string& group) const;
    std::vector<Variant> controls_of(Object& form) const;
    void fill_control(Bound& bound, const Fields& row);
    void fill_image_combo(Bound& bound, const Fields& row, const Variant& value);
    std::optional<Variant> read_control(Bound& bound, std::optional<std::u16string>& description);

    Object ex_;
    int32_t cell_back_color_;
    int32_t fore_color_ = 0;
    int32_t back_color_ = 0;
    Clipboard* clipboard_;
    PictureLoader pictures_;
};

}  // namespace celdo::services
