#include "grid/plain_template.h"

#include "automation/error.h"
#include "engine/report.h"

namespace tabrixdb {

namespace {

constexpr std::string_view kRowButtons =
    "<tr><td nowrap bgcolor='#FFFFFF'><font face='Arial' size='1'>"
    "<a href=\"#~btn_edit_row~#\"><img border='0' src='/tabrixdb/images/Ver2_picEdit.gif'></a>"
    "<a href=\"#~btn_delete_row~#\"><img border='0' src='/tabrixdb/images/Ver2_picTrash.gif'></a>"
    "<a href=\"#~btn_update_row~#\"><img border='0' src='/tabrixdb/images/Ver2_picSave.gif'></a>"
    "<a href=\"#~btn_cancel_row~#\"><img border='0' "
    "src='/tabrixdb/images/Ver2_piccancel.gif'></a></font></td>";

// The navigation cell is deliberately never closed.
constexpr std::string_view kNavigation =
    "' ><a href=\"#~btn_first~#\"><img border='0' src='/tabrixdb/images/Ver2_ArrowFirst.gif' alt='First "
    "page' ></a>"
    "<a href=\"#~btn_previous~#\"><img border='0' src='/tabrixdb/images/Ver2_ArrowPrev.gif' alt='Previous "
    "page' ></a>"
    "<a href=\"#~btn_next~#\"><img border='0' src='/tabrixdb/images/Ver2_ArrowNext.gif' alt='Next page' ></a>"
    "<a href=\"#~btn_last~#\"><img border='0' src='/tabrixdb/images/Ver2_ArrowLast.gif' alt='Last page' "
    "></a></tr>";

} // namespace

std::string plain_template(const platform::Recordset& records) {
    return guard("Get NoTemplate Grid", [&] {
        const auto& columns = records.columns();
        if (columns.size() >= INT16_MAX)
            throw Error(kErrorOverflow);
        std::string header = "<tr><td nowrap bgcolor='#90F0FE'>&nbsp;</td>";
        std::string content(kRowButtons);
        for (const platform::Column& column : columns) {
            header += "<td nowrap bgcolor='#90F0FE'><b><font face='Arial' size='2'>#~" + column.name +
                      "~#</font></b></td>";
            content += "<td  bgcolor='#FFFFFF'><font face='Arial' size='1'><b>#~" + column.name +
                       "~#</b></font></td>";
        }
        // The header marker deliberately stands before the table's opening tag.
        return "<!--tabrixdb:header_start--><TABLE border=1 cellPadding=0 cellSpacing=0 height=118 "
               "width=700><TBODY>" +
               header + "</tr><!--tabrixdb:header_end--><!--tabrixdb:content_start-->" + content +
               "</tr><!--tabrixdb:content_end--><!--tabrixdb:footer_start--><tr><td nowrap bgcolor='#C0C0C0' "
               "colspan='" +
               std::to_string(columns.size() + 1) + std::string(kNavigation) +
               "</tbody></table><!--tabrixdb:footer_end-->";
    });
}

} // namespace tabrixdb
