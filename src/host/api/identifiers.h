#pragma once
// Every numeric identifier of the border. The numbers are ours and carry no design.

#include "host/api/types.h"

// Interfaces
inline constexpr PMIID IID_IUNKNOWN{1};
inline constexpr PMIID IID_IPMPERSIST{2};
inline constexpr PMIID IID_IEXECUTIONCONTEXTSESSION{3};
inline constexpr PMIID IID_IAPPLICATION{4};
inline constexpr PMIID IID_IDOCUMENTLIST{5};
inline constexpr PMIID IID_IWORKSPACE{6};
inline constexpr PMIID IID_IOBJECTMODEL{7};
inline constexpr PMIID IID_IDOCUMENT{10};
inline constexpr PMIID IID_IPAGELIST{11};
inline constexpr PMIID IID_ISPREADLIST{12};
inline constexpr PMIID IID_ISPREAD{13};
inline constexpr PMIID IID_ILAYERLIST{14};
inline constexpr PMIID IID_IDOCUMENTLAYER{15};
inline constexpr PMIID IID_ISPREADLAYER{16};
inline constexpr PMIID IID_ISTORYLIST{17};
inline constexpr PMIID IID_IHIERARCHY{20};
inline constexpr PMIID IID_IGEOMETRY{21};
inline constexpr PMIID IID_IFRAMEDATA{22};
inline constexpr PMIID IID_IMULTICOLUMNTEXTFRAME{23};
inline constexpr PMIID IID_ITAGSTORE{24};
inline constexpr PMIID IID_ITEXTMODEL{30};
inline constexpr PMIID IID_ITEXTFRAMELIST{31};
inline constexpr PMIID IID_IFRAMELISTCOMPOSER{32};
inline constexpr PMIID IID_IOWNEDITEMSTRAND{33};
inline constexpr PMIID IID_IANCHOREDOBJECT{34};
inline constexpr PMIID IID_IPARAGRAPHSTYLENAMETABLE{40};
inline constexpr PMIID IID_ICHARACTERSTYLENAMETABLE{41};
inline constexpr PMIID IID_ITABLESTYLENAMETABLE{42};
inline constexpr PMIID IID_ICELLSTYLENAMETABLE{43};
inline constexpr PMIID IID_IOBJECTSTYLENAMETABLE{44};
inline constexpr PMIID IID_IPDFEXPORTSETUPPROVIDER{50};
inline constexpr PMIID IID_IMARGINS{25};
inline constexpr PMIID IID_IPRESENTATIONLIST{26};
inline constexpr PMIID IID_IDOCUMENTFILEHANDLER{27};
inline constexpr PMIID IID_ILAYOUTWINDOW{28};
inline constexpr PMIID IID_IPDFPLACEPREFS{51};
inline constexpr PMIID IID_IPDFEXPORTVIEWPREFS{52};
inline constexpr PMIID IID_IPMCOMMAND{60};
inline constexpr PMIID IID_IIMPORTRESOURCECMDDATA{61};
inline constexpr PMIID IID_IOPENFILECMDDATA{62};
inline constexpr PMIID IID_INEWSPREADCMDDATA{63};
inline constexpr PMIID IID_INEWSPREADREFERENCECMDDATA{64};
inline constexpr PMIID IID_INEWSPREADOPTIONCMDDATA{65};

// Services of UtilsBoss
inline constexpr PMIID IID_IPAGEITEMTYPEUTILS{100};
inline constexpr PMIID IID_ILAYOUTUTILS{101};
inline constexpr PMIID IID_ITEXTUTILS{102};
inline constexpr PMIID IID_IURIUTILS{103};
inline constexpr PMIID IID_IFRAMECONTENTUTILS{104};
inline constexpr PMIID IID_ICONTENTFITUTILS{105};
inline constexpr PMIID IID_IGEOMETRYUTILS{106};
inline constexpr PMIID IID_ITRANSFORMUTILS{107};
inline constexpr PMIID IID_IHIERARCHYUTILS{108};
inline constexpr PMIID IID_ILAYERUTILS{109};
inline constexpr PMIID IID_IPAGEITEMFACTORYUTILS{110};
inline constexpr PMIID IID_IGRAPHICATTRIBUTEUTILS{111};
inline constexpr PMIID IID_IDOCUMENTUTILS{112};
inline constexpr PMIID IID_IWINDOWUTILS{113};

// Classes of objects
inline constexpr ClassID kDocumentBoss{1};
inline constexpr ClassID kWorkspaceBoss{2};
inline constexpr ClassID kSpreadBoss{3};
inline constexpr ClassID kPageBoss{4};
inline constexpr ClassID kDocumentLayerBoss{5};
inline constexpr ClassID kSpreadLayerBoss{6};
inline constexpr ClassID kPathPageItemBoss{7};  ///< every frame, shape and line whose form is a path
inline constexpr ClassID kGroupItemBoss{8};
inline constexpr ClassID kGraphicItemBoss{9};  ///< a placed file inside a frame
inline constexpr ClassID kMultiColumnFrameBoss{10};
inline constexpr ClassID kTextColumnBoss{11};
inline constexpr ClassID kTextStoryBoss{12};
inline constexpr ClassID kStyleBoss{13};
inline constexpr ClassID kAnchoredObjectBoss{15};  ///< stands in a story's text and holds one page item
inline constexpr ClassID kPDFExportBoss{14};       ///< carries every registered export provider

// Classes of commands
inline constexpr ClassID kDeletePageItemsCmdBoss{100};
inline constexpr ClassID kDeleteStoryCmdBoss{101};
inline constexpr ClassID kCopyStoryCmdBoss{102};
inline constexpr ClassID kImportResourceCmdBoss{103};
inline constexpr ClassID kSetNonPrintingCmdBoss{104};
inline constexpr ClassID kNewSpreadCmdBoss{105};
inline constexpr ClassID kDeleteSpreadCmdBoss{106};
inline constexpr ClassID kOpenDocumentCmdBoss{107};
inline constexpr ClassID kOpenLayoutWindowCmdBoss{108};

// Implementations that plug-ins offer
inline constexpr ImplementationID kMyPDFExportProviderImpl{0x5601};
