#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "Export.h"

// The return codes in their fixed order. Callers compare against the values, so a name is never
// removed, renamed or moved.
#define VARNEL_XML_CREATION_RETURN_VALUES(X)         \
  X(PARK_XML_OBJ_MISSING, 0x80042AF8)                \
  X(ACTION_MISSING, 0x80042AF9)                      \
  X(ADD_CHILD_NODE_FAILED, 0x80042AFA)               \
  X(ADD_CMPLX_TYPE_TO_PRNT_FAILED, 0x80042AFB)       \
  X(ADD_COMPLEX_TYPE_FAILED, 0x80042AFC)             \
  X(ADD_INFO_TO_NODE_FAILED, 0x80042AFD)             \
  X(ADD_ROW_TO_SINGLE_NODE_FAILED, 0x80042AFE)       \
  X(APPEND_NODE_FAILED, 0x80042AFF)                  \
  X(APPEND_SNGL_NODE_FAILED, 0x80042B00)             \
  X(BUILD_MSG_XML_FAILED, 0x80042B01)                \
  X(BUILD_PARK_XML_FAILED, 0x80042B02)               \
  X(CELL_INFO_MISSING, 0x80042B03)                   \
  X(CHILD_NODE_MISSING, 0x80042B04)                  \
  X(CHLD_NODE_SELECTION_FAILED, 0x80042B05)          \
  X(CLMN_FRM_ROW_SELECTION_FAILED, 0x80042B06)       \
  X(CLMN_LBL_FAILED, 0x80042B07)                     \
  X(CLMN_SELECTION_FAILED, 0x80042B08)               \
  X(CLONING_CMPLX_TYPE_FAILED, 0x80042B09)           \
  X(CMPLX_TYPE_CLONE_FAILED, 0x80042B0A)             \
  X(CMPLX_TYPE_MISSING, 0x80042B0B)                  \
  X(CMPLX_TYPE_SELECTION_FAILED, 0x80042B0C)         \
  X(CNTXT_OBJ_MISSING, 0x80042B0D)                   \
  X(CREATE_MSG_DET_FAILED, 0x80042B0E)               \
  X(CREATE_NODE_FAILED, 0x80042B0F)                  \
  X(CURRENT_NODE_MISSING, 0x80042B10)                \
  X(GET_PROT_XML_FAILED, 0x80042B11)                 \
  X(INCORRECT_NODE_TYPE, 0x80042B12)                 \
  X(LOAD_OBJ_LIST_XSL_FAILED, 0x80042B13)            \
  X(LOAD_TEMPLATE_XML_FAILED, 0x80042B14)            \
  X(MULTI_VALUE_MISSING, 0x80042B15)                 \
  X(NO_DATA_ADDED, 0x80042B16)                       \
  X(NOABSENTNODEFOUND, 0x80042B17)                   \
  X(NODE_MISSING, 0x80042B18)                        \
  X(NOMAPPERFOROBJECT, 0x80042B19)                   \
  X(OBJ_LIST_MISSING, 0x80042B1A)                    \
  X(OBJ_LST_FRM_PROT_FAILED, 0x80042B1B)             \
  X(OBJ_LST_TRNSFRM_FAILED, 0x80042B1C)              \
  X(OBJ_MAPPER_OBJ_MISSING, 0x80042B1D)              \
  X(OBJECT_MAPPER_INFO_MISSING, 0x80042B1E)          \
  X(OBJECTMAPPER_MISSING, 0x80042B1F)                \
  X(PARENT_NODE_MISSING, 0x80042B20)                 \
  X(PARENT_PATH_MISSING, 0x80042B21)                 \
  X(PRCSS_PROT_TBL_FAILED, 0x80042B22)               \
  X(PRK_PRT_FLDS_FAILED, 0x80042B23)                 \
  X(PRM_LST_LNGTH_INCORRECT, 0x80042B24)             \
  X(PRM_LST_MISSING, 0x80042B25)                     \
  X(PRM_OBJ_MISSING, 0x80042B26)                     \
  X(PROT_TBL_LIST_MISSING, 0x80042B27)               \
  X(PROTFLD_LIST_MISSING, 0x80042B28)                \
  X(PROTFLD_LIST_SELECTION_FAILED, 0x80042B29)       \
  X(PRT_FLD_MISSING, 0x80042B2A)                     \
  X(PRT_FLDS_SELECTION_FAILED, 0x80042B2B)           \
  X(PRT_TBL_LIST_MISSING, 0x80042B2C)                \
  X(PRT_TBL_MISSING, 0x80042B2D)                     \
  X(REQUEST_OBJ_MISSING, 0x80042B2E)                 \
  X(ROWS_SELECTION_FAILED, 0x80042B2F)               \
  X(SETTING_TEXT_FAILED, 0x80042B30)                 \
  X(VALUE_FRM_PRM_MISSING, 0x80042B31)               \
  X(VALUE_NODES_MISSING, 0x80042B32)                 \
  X(PRK_PRT_TBL_FAILED, 0x80042B33)                  \
  X(PROT_TBL_ROW_MISSING, 0x80042B34)                \
  X(PROT_TBL_CLMN_MISSING, 0x80042B35)               \
  X(CLONE_CLMN_NODE_FAILED, 0x80042B36)              \
  X(APPEND_CLMN_NODE_FAILED, 0x80042B37)             \
  X(PRCSS_PROT_FLDS_FAILED, 0x80042B38)              \
  X(ADD_XTRA_VALUE_FAILED, 0x80042B39)               \
  X(TBL_ROW_SELECTION_FAILED, 0x80042B3A)            \
  X(SCHEMA_NODE_MISSING, 0x80042B3B)                 \
  X(PROTTBL_LIST_SELECTION_FAILED, 0x80042B3C)       \
  X(PROT_TBL_ROWCOUNT_INVALID, 0x80042B3D)           \
  X(APPEND_ROW_NODE_FAILED, 0x80042B3E)              \
  X(REMOVE_TABLE_NODE_FAILED, 0x80042B3F)            \
  X(BUILD_DOC_DATA_FAILED, 0x80042B40)               \
  X(PROT_NAME_NODE_MISSING, 0x80042B41)              \
  X(PROT_PARENT_NODE_MISSING, 0x80042B42)            \
  X(PROT_NODE_MISSING, 0x80042B43)                   \
  X(PROT_PATH_MISSING, 0x80042B44)                   \
  X(PROT_NODE_NOT_SELECTED, 0x80042B45)              \
  X(CREATE_DOC_NODES_FAILED, 0x80042B46)             \
  X(HIDDEN_FLDS_FAILED, 0x80042B47)                  \
  X(HIDDEN_FLD_SELECTION_FAILED, 0x80042B48)         \
  X(SCHEMA_VALIDATION_FAILED, 0x80042B49)            \
  X(SCHEMA_CACHE_NOT_ADDED, 0x80042B4A)              \
  X(REF_XML_OBJ_MISSING, 0x80042B4B)                 \
  X(NAMESPACE_XML_PARSE_ERROR, 0x80042B4C)           \
  X(NAMESPACE_XML_LOAD_ERROR, 0x80042B4D)            \
  X(NAMESPACE_XML_MISSING, 0x80042B4E)               \
  X(NAMESPACE_SCHEMA_LIST_MISSING, 0x80042B4F)       \
  X(NAMESPACES_UNAVAILABLE, 0x80042B50)              \
  X(UNABLE_TO_SET_NAMESPACES, 0x80042B51)            \
  X(SCHEMA_REF_ID_NOT_SUPPLIED, 0x80042B52)          \
  X(SCHEMA_REFERENCE_XML_MISSING, 0x80042B53)        \
  X(SCHEMA_REFERENCE_XML_NODE_MISSING, 0x80042B54)   \
  X(HIDDEN_FIELD_LIST_MISSING, 0x80042B55)           \
  X(CREATE_PRTOBJCT_FOR_HDDN_FLD_FAILED, 0x80042B56) \
  X(APPEND_PRTOBJCT_TO_PARK_XML_FAILED, 0x80042B57)  \
  X(QUESTION_ID_MISSING, 0x80042B58)                 \
  X(NODE_PATH_MISSING, 0x80042B59)                   \
  X(NODE_PATH_ERROR, 0x80042B5A)                     \
  X(APPEND_NODE_TO_PARENT_FAILED, 0x80042B5B)        \
  X(EXTRA_PATH_MISSING, 0x80042B5C)                  \
  X(UNABLE_TO_SELECT_PARAMETER, 0x80042B5D)          \
  X(PARAM_ATTR_MISSING, 0x80042B5E)                  \
  X(ROOT_NODE_SELECTION_FAILED, 0x80042B5F)          \
  X(ARRAYLIST_SPLIT_FAILED, 0x80042B60)              \
  X(REMOVE_ATTRIBUTE_FAILED, 0x80042B61)             \
  X(MSG_XML_OR_SCHEMA_XML_MISSING, 0x80042B62)       \
  X(VALIDATOR_OBJECTS_MISSING, 0x80042B63)           \
  X(UNABLE_TO_LOAD_QUESTIONS_XML, 0x80042B64)        \
  X(QUESTIONS_XML_PARSE_ERROR, 0x80042B65)           \
  X(UNABLE_TO_LOAD_REFERENCE_XML, 0x80042B66)        \
  X(REFERENCE_XML_PARSE_ERROR, 0x80042B67)           \
  X(UNABLE_TO_RETRIEVE_QUESTION_LIST, 0x80042B68)

namespace Varnel_Tolv_XML_Creation {

/// Publishes the return codes; it has no members of its own.
class VARNEL_EXPORT ServiceEnums {
 public:
  /// The codes that `Acknowledge::ErrorCode` carries for the failures that the library expects:
  /// consecutive signed values from -2147210504 to -2147210392.
  enum eReturnValues : std::int32_t {
#define VARNEL_DECLARE(NAME, VALUE) SVC_RET_XML_CREATION_##NAME = static_cast<std::int32_t>(VALUE),
    VARNEL_XML_CREATION_RETURN_VALUES(VARNEL_DECLARE)
#undef VARNEL_DECLARE
  };
};

using eReturnValues = ServiceEnums::eReturnValues;
using enum ServiceEnums::eReturnValues;

/// The name of a return code, such as "SVC_RET_XML_CREATION_NODE_MISSING"; none for 0 and for the
/// numbers of run-time errors.
VARNEL_EXPORT std::optional<std::string_view> ReturnValueName(std::int32_t lngErrorCode) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
