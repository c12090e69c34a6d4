// tolva::Tolva2011Register: the one object a host program embeds.
//
// Every member is noexcept: failures come back as results (false, "", 0 or
// a default) and, where a member has one, as a readable text in its
// ErrorMessage argument. Booleans are host booleans (true = -1); an option
// counts as set only when it is exactly -1. Arguments a member may write
// back are non-const references. Members run on the host's thread; long
// loops raise events and let the host process pending events between units
// of work, and may be stopped from the host's handlers.
#ifndef TOLVA_TOLVA2011REGISTER_H_
#define TOLVA_TOLVA2011REGISTER_H_

#include <memory>
#include <string>

#include "tolva/events.h"
#include "tolva/export.h"
#include "tolva/host_container.h"
#include "tolva/host_types.h"
#include "tolva/platform/services.h"
#include "tolva/platform/window_services.h"
#include "tolva/property_bag.h"

namespace tolva {

namespace detail {
struct ComponentState;
}

class TOLVA_EXPORT Tolva2011Register {
 public:
  // Create: works on `services` (the real Linux ones by default), tells
  // `container` about property changes and lets it process pending events,
  // raises events on `events`. Neither pointer is owned; either may be null.
  explicit Tolva2011Register(platform::Services services = platform::LinuxServices(),
                             HostContainer* container = nullptr, Tolva2011RegisterEvents* events = nullptr) noexcept;
  ~Tolva2011Register();
  Tolva2011Register(const Tolva2011Register&) = delete;
  Tolva2011Register& operator=(const Tolva2011Register&) = delete;

  void SetHostContainer(HostContainer* container) noexcept;
  void SetEvents(Tolva2011RegisterEvents* events) noexcept;

  // ---- Lifecycle (called by the host container) -------------------------
  // First placement on a host form: every property to its default.
  void InitProperties() noexcept;
  // Load the persisted properties; absent keys take their defaults.
  void ReadProperties(PropertyBag& bag) noexcept;
  // Save the persisted properties; only values that differ from the default are written.
  void WriteProperties(PropertyBag& bag) noexcept;
  // Keep the design-time extent equal to the component's picture.
  void Resize() noexcept;
  Long ControlWidth() const noexcept;
  Long ControlHeight() const noexcept;

  // ---- Properties (persisted unless noted) ------------------------------
  std::string DirectoryRun() const noexcept;
  void DirectoryRun(const std::string& value) noexcept;
  Single FormSizeRatio() const noexcept;
  void FormSizeRatio(Single value) noexcept;
  PictureRef Icon() const noexcept;
  void Icon(PictureRef value) noexcept;
  std::string ProgramAuthor() const noexcept;
  void ProgramAuthor(const std::string& value) noexcept;
  std::string ProgramCompany() const noexcept;
  void ProgramCompany(const std::string& value) noexcept;
  std::string ProgramName() const noexcept;
  void ProgramName(const std::string& value) noexcept;
  std::string RegistryApp() const noexcept;
  void RegistryApp(const std::string& value) noexcept;
  std::string RegistryBackupFile() const noexcept;
  void RegistryBackupFile(const std::string& value) noexcept;
  Boolean RegistryBackupLoad() const noexcept;
  void RegistryBackupLoad(Boolean value) noexcept;
  // Run time only: records between two progress events of the long readers.
  Long ReadWriteIncrement() const noexcept;
  void ReadWriteIncrement(Long value) noexcept;
  // The default filter text of the file dialogs.
  std::string DialogFilter() const noexcept;

  // ---- Error texts and user messages ------------------------------------
  // argMessage + " [" + shortened argFile + "] does not exist." (no brackets when argFile is empty)
  std::string ErrorMessageDoesNotExist(const std::string& argMessage, const std::string& argFile) noexcept;
  // argMessage + " has not been defined."
  std::string ErrorMessageNotDefined(const std::string& argMessage) noexcept;
  // Message1 + " [" + shortened FilePath + "]." or "] " + Message2.
  Variant ErrorMessageShortenFile(const std::string& Message1, const std::string& FilePath,
                                  const std::string& Message2 = "") noexcept;
  // The system's one-line text for an error number; "Error Number = n" when it has none.
  std::string FormatErrorMessage(Long ErrorNumber) noexcept;
  void MessageError(const std::string& ErrorMessage) noexcept;
  void MessageInfo(const std::string& ErrorMessage) noexcept;
  void MessageWarn(const std::string& ErrorMessage) noexcept;
  // Asks the user; Buttons is the button set (4 = Yes/No). Returns the pressed button's code.
  Variant MessageQuery(const std::string& ErrorMessage, Long Buttons) noexcept;

  // ---- Path text helpers ------------------------------------------------
  std::string AddMissingBackslash(const std::string& InputString) noexcept;
  std::string AddMissingSlash(const std::string& InputString) noexcept;
  std::string RemoveLastBackslash(const std::string& InputString) noexcept;
  std::string RemoveLastSlash(const std::string& InputString) noexcept;
  std::string BuildPath(const std::string& Directory, const std::string& FilePath) noexcept;
  std::string BuildPathRun(const std::string& FilePath) noexcept;
  std::string FileDirectory(const std::string& FilePath) noexcept;
  std::string FileName(const std::string& FilePath) noexcept;
  std::string FileNameOnly(const std::string& FilePath) noexcept;
  std::string FileExtension(const std::string& FilePath) noexcept;
  std::string FilePathSimplify(const std::string& FilePath, const std::string& Directory) noexcept;
  std::string FilePathShorten(const std::string& FilePath, const std::string& Delimiter = "", Long MaxLength = 30,
                              Long StartKeep = 2, Long SlashesStart = 2, Long SlashesEnd = 2) noexcept;

  // ---- File system operations and file tests ----------------------------
  Boolean DirectoryExists(const std::string& Directory) noexcept;
  Boolean DirectoryChange(const std::string& Directory, std::string& ErrorMessage) noexcept;
  Boolean DirectoryMake(const std::string& Directory, std::string& ErrorMessage) noexcept;
  Boolean FileExists(const std::string& FilePath) noexcept;
  Boolean FileTestAscii(const std::string& FilePath) noexcept;
  Boolean FileTestIdentical(const std::string& FilePath1, const std::string& FilePath2, Boolean TestDates = kTrue,
                            Boolean TestSizes = kTrue, Boolean TestData = kFalse, Long TestDataBytes = 100000) noexcept;
  std::string FileReadProfileString(const std::string& FilePath, const std::string& Section, const std::string& Key,
                                    const std::string& Default = "") noexcept;
  // An empty Value deletes the key; a deletion from a profile that does not exist
  // creates it, empty. The write is atomic and leaves no other file beside the profile.
  void FileWriteProfileString(const std::string& FilePath, const std::string& Section, const std::string& Key,
                              const std::string& Value) noexcept;
  Boolean KillFile(const std::string& FilePath, std::string& ErrorMessage) noexcept;
  Boolean KillFiles(const std::string& FilePath, std::string& ErrorMessage, Boolean NotExistError = kTrue,
                    Boolean ClearAttributes = kTrue) noexcept;
  Boolean KillTempFiles(const std::string& TempTag, std::string& ErrorMessage) noexcept;
  std::string WinDirectory() noexcept;
  std::string WinSysDirectory() noexcept;
  std::string WinTempPath() noexcept;
  std::string WinTempFile(const std::string& TempTag = "", const std::string& DefaultFile = "") noexcept;

  // ---- Timing and text utilities ----------------------------------------
  Long StringCountCharacters(const std::string& InputString, const std::string& CountCharacters,
                             Boolean IgnoreCase = kFalse, Boolean RepeatAsOne = kFalse) noexcept;
  std::string TrimCrLf(const std::string& InputString) noexcept;
  void WaitMilliSeconds(Long MilliSeconds) noexcept;
  void WaitSeconds(Long Seconds) noexcept;
  Date LastDateInMonth(Long Month, Long Year) noexcept;
  std::string MinutesSeconds(Long Seconds) noexcept;
  std::string HoursMinutes(Long Minutes) noexcept;
  std::string HoursMinutesSeconds(Long Seconds) noexcept;
  Boolean IsTime(const std::string& InputString, const std::string& TimeDelimiter = ":") noexcept;
  std::string ProgramCallSetup(const std::string& ProgramCall, const std::string& FilePath) noexcept;
  Boolean ProgramExecute(const std::string& ProgramCommand) noexcept;
  // One value of the settings store: a String, a Long, or "" when absent.
  Variant QueryValue(Long KeyArea, const std::string& KeyName, const std::string& ValueName) noexcept;
  // The program registered for a file extension ("txt" or ".txt"): its name
  // and its open command with "%1" in place of the file. False when none.
  Boolean QueryProgramForExtension(const std::string& Extension, std::string& ProgramName,
                                   std::string& ProgramCall) noexcept;
  std::string ComputerName() noexcept;
  std::string UserName() noexcept;

  // ---- Text files -------------------------------------------------------
  // "Reads a text file."
  std::string ReadFile(const std::string& FilePath) noexcept;
  // "Fully reads a text file."
  std::string ReadFileFull(const std::string& FilePath, std::string& ErrorMessage) noexcept;
  // "Writes a text file."
  Boolean WriteFile(const std::string& FilePath, const std::string& Output, std::string& ErrorMessage) noexcept;
  // "Cancels a read/write."
  void ReadWriteCancel() noexcept;
  // "Reads a text file to an array."
  Boolean ReadFileToArray(const std::string& FilePath, HostArray<std::string>& InputArray, Long MaxRows,
                          Long MaxColumns, Long& ReturnedRows, Long& ReturnedColumns, Long& ActualRows,
                          Long& ActualColumns, std::string& ErrorMessage, const std::string& Delimiter = ",",
                          Boolean TrimValues = kTrue) noexcept;
  // "Gets the size of a text file as an array."
  Boolean ReadFileToArrayGetSize(const std::string& FilePath, Long& ActualRows, Long& ActualColumns,
                                 std::string& ErrorMessage, const std::string& Delimiter = ",",
                                 Long TestRows = 0) noexcept;
  // "Reads a text file to a CSV database." NumberRecords and NumberFields describe the ranges asked for
  // (LastRecord - FirstRecord + 1, LastField - FirstField + 1): a reversed range gives a negative count and
  // stores nothing.
  Boolean ReadFileToCSVDatabase(const std::string& FilePath, HostArray<std::string>& FieldNames,
                                HostArray<std::string>& FieldValues, Long FirstRecord, Long LastRecord, Long FirstField,
                                Long LastField, Long& NumberRecords, Long& NumberFields, std::string& ErrorMessage,
                                const std::string& Delimiter = ",", Boolean TrimValues = kTrue) noexcept;

  // ---- Application settings ---------------------------------------------
  std::string RegistryGetSetting(const std::string& Section, const std::string& Key,
                                 const std::string& Default) noexcept;
  Long RegistryGetSettingLong(const std::string& Section, const std::string& Key, Long Default) noexcept;
  Double RegistryGetSettingDouble(const std::string& Section, const std::string& Key, Double Default) noexcept;
  Boolean RegistryGetSettingBoolean(const std::string& Section, const std::string& Key, Boolean Default) noexcept;
  void RegistrySaveSetting(const std::string& Section, const std::string& Key, const std::string& Value) noexcept;
  void RegistrySaveSettingLong(const std::string& Section, const std::string& Key, Long Value) noexcept;
  void RegistrySaveSettingDouble(const std::string& Section, const std::string& Key, Double Value) noexcept;
  void RegistrySaveSettingBoolean(const std::string& Section, const std::string& Key, Boolean Value) noexcept;
  void RegistryDeleteKey(const std::string& Section, const std::string& Key) noexcept;
  void RegistryDeleteSection(const std::string& Section) noexcept;
  Long RegistryGetSections(HostArray<std::string>& Sections, Long MaxSections) noexcept;
  Boolean RegistryTestSection(const std::string& Section) noexcept;
  // "Gets the form position from the Windows registry and then positions the form."
  void RegistryGetPosition(Form& FormToPosition, const std::string& Section = "Startup") noexcept;
  // "Saves the form position to the Windows registry."
  void RegistrySavePosition(Form& FormToPosition, const std::string& Section = "Startup") noexcept;

  // ---- FTP sessions and errors ------------------------------------------
  Boolean FTPSessionOpen(const std::string& Host, const std::string& UserID, const std::string& Password,
                         std::string& ErrorMessage) noexcept;
  void FTPSessionClose() noexcept;
  Boolean FTPSessionReconnect(std::string& ErrorMessage) noexcept;
  Boolean FTPSessionTest(std::string& ErrorMessage) noexcept;
  Long FTPSession() noexcept;
  Long FTPConnect() noexcept;
  void FTPCloseHandle(Long& Handle) noexcept;
  std::string FTPLastError() noexcept;
  std::string FTPShortError() noexcept;
  std::string FTPExtendedError(Long& ErrorNumber) noexcept;
  std::string FTPSessionError(const std::string& Tag, Long& ErrorNumber) noexcept;
  std::string IsConnected(Long& ConnectFlags) noexcept;
  // Connect and read time-outs of FTP connections opened from now on (ms, default 60000).
  Long FTPConnectTimeout() const noexcept;
  void FTPConnectTimeout(Long MilliSeconds) noexcept;
  Long FTPReadTimeout() const noexcept;
  void FTPReadTimeout(Long MilliSeconds) noexcept;

  // ---- FTP directories --------------------------------------------------
  Boolean FTPSessionDirectoryCreate(const std::string& Directory, std::string& ErrorMessage) noexcept;
  std::string FTPSessionDirectoryCurrent() noexcept;
  Boolean FTPSessionDirectoryCurrentSet(const std::string& Directory) noexcept;
  Boolean FTPSessionDirectoryDelete(const std::string& Directory) noexcept;
  Boolean FTPSessionDirectoryExists(const std::string& Directory) noexcept;

  // ---- FTP finding, listing and deleting --------------------------------
  // Entries come as the server names them: "." and ".." that a server lists are counted, reported and stored
  // as directories.
  Long FTPSessionFileFind(const std::string& FileMask, std::string& ErrorMessage) noexcept;
  Boolean FTPSessionFileFindCount(const std::string& FileMask, Long& NumberFiles, Long& NumberDirectories,
                                  std::string& ErrorMessage) noexcept;
  Long FTPSessionFileFindDirectories(const std::string& FileMask, HostArray<std::string>& Directories,
                                     Long MaxDirectories, std::string& ErrorMessage) noexcept;
  Long FTPSessionFileFindFiles(const std::string& FileMask, HostArray<std::string>& Files, Long MaxFiles,
                               std::string& ErrorMessage) noexcept;
  Long FTPSessionFileFindFilesFull(const std::string& FileMask, HostArray<std::string>& Files, HostArray<Long>& Sizes,
                                   HostArray<std::string>& Dates, HostArray<std::string>& Times, Long MaxFiles,
                                   std::string& ErrorMessage) noexcept;
  Boolean FTPSessionFileExists(const std::string& FileName, std::string& ErrorMessage) noexcept;
  Boolean FTPSessionFileExistsFull(const std::string& FileName, Long& Size, std::string& WriteDate,
                                   std::string& WriteTime, std::string& ErrorMessage) noexcept;
  Boolean FTPSessionFileDelete(const std::string& FilePath) noexcept;
  Boolean FTPSessionFileDeleteMask(const std::string& FileMask, std::string& ErrorMessage) noexcept;

  // ---- FTP transfers ----------------------------------------------------
  Boolean FTPSessionGet(const std::string& RemoteFile, const std::string& LocalFile, Boolean AsciiFile,
                        std::string& ErrorMessage) noexcept;
  Boolean FTPSessionGetAuto(const std::string& RemoteFile, const std::string& LocalFile,
                            std::string& ErrorMessage) noexcept;
  std::string FTPSessionGetAutoAscii() const noexcept;
  // Gets every matching file into LocalDirectory. A listed name that is empty, ".", "..", or holds "/", "\\" or
  // a NUL is never made a local path: FTPSessionFileDownloaded reports it with Success false.
  Boolean FTPSessionGetMask(const std::string& FileMask, const std::string& LocalDirectory,
                            std::string& ErrorMessage) noexcept;
  Boolean FTPSessionPut(const std::string& LocalFile, const std::string& RemoteFile, Boolean AsciiFile,
                        std::string& ErrorMessage) noexcept;
  Boolean FTPSessionGetBuffered(const std::string& RemoteFile, const std::string& LocalFile, Boolean AsciiFile,
                                std::string& ErrorMessage, Long BufferSize = 10000) noexcept;
  Boolean FTPSessionPutBuffered(const std::string& LocalFile, const std::string& RemoteFile, Boolean AsciiFile,
                                std::string& ErrorMessage, Long BufferSize = 10000) noexcept;
  Boolean FTPSessionGetBuffer(const std::string& RemoteFile, Long BytesRequired, std::string& Buffer,
                              Long& BytesWritten, std::string& ErrorMessage) noexcept;
  void FTPSessionStop() noexcept;
  Boolean FTPSessionStopped() const noexcept;

  // ---- One-call FTP transfers and connection tests ----------------------
  Boolean FTPGetAsciiFile(const std::string& Host, const std::string& UserID, const std::string& Password,
                          const std::string& RemoteFile, const std::string& LocalFile,
                          std::string& ErrorMessage) noexcept;
  Boolean FTPGetBinaryFile(const std::string& Host, const std::string& UserID, const std::string& Password,
                           const std::string& RemoteFile, const std::string& LocalFile,
                           std::string& ErrorMessage) noexcept;
  Boolean FTPPutAsciiFile(const std::string& Host, const std::string& UserID, const std::string& Password,
                          const std::string& LocalFile, const std::string& RemoteFile,
                          std::string& ErrorMessage) noexcept;
  Boolean FTPPutBinaryFile(const std::string& Host, const std::string& UserID, const std::string& Password,
                           const std::string& LocalFile, const std::string& RemoteFile,
                           std::string& ErrorMessage) noexcept;
  Boolean FTPTest(const std::string& Host, const std::string& UserID, const std::string& Password,
                  std::string& ErrorMessage) noexcept;
  Boolean FTPTestDirectory(const std::string& Host, const std::string& UserID, const std::string& Password,
                           const std::string& Directory, std::string& ErrorMessage) noexcept;

  // ---- Window layout and list boxes -------------------------------------
  Long CaptionHeight() noexcept;
  Long MenuHeight() noexcept;
  Long DialogWidth() noexcept;
  Long SizableWidth() noexcept;
  Long FormMarginX() noexcept;
  Long FormMarginY() noexcept;
  Long ScreenLeft() noexcept;
  Long ScreenTop() noexcept;
  Long ScreenWidth() noexcept;
  Long ScreenHeight() noexcept;
  // "Makes sure that a form is displayed on the screen."
  void AdjustFormPosition(Form& FormToAdjust) noexcept;
  // "Aligns a label to a related text or combo box."
  void AlignLabel(Label& LabelToAlign, Control& AnchorControl, Boolean AlignRight) noexcept;
  // "Setup and size a form to the 'Tolva' standard."
  void SetupFormTolvaSize(Control& ControlRight, Control& ControlBottom) noexcept;
  // Sets tab stops on a list box of tab-separated rows, from the widest text
  // of each column (or the caller's ColumnWidths, in twips), and its
  // horizontal scroll extent to the total width.
  void ListBoxTabPositionsSet(ListBox& ListObject, Long Columns, HostArray<Long>& ColumnWidths,
                              Boolean CalculateWidths = kTrue, Long ColumnSpace = 2) noexcept;
  // Shows the standard Open dialog. True with FilePath set to the chosen file;
  // false when the user cancels (ErrorMessage empty) or no dialog can be
  // shown (ErrorMessage says so). An empty Filter means DialogFilter();
  // InitialPath is a directory or a file to start from.
  Boolean DialogFileOpen2(std::string& FilePath, std::string& ErrorMessage, const std::string& Title = "",
                          const std::string& Filter = "", const std::string& InitialPath = "") noexcept;
  // The standard Save dialog, with the same arguments; it asks before a
  // chosen file is overwritten.
  Boolean DialogFileSave2(std::string& FilePath, std::string& ErrorMessage, const std::string& Title = "",
                          const std::string& Filter = "", const std::string& InitialPath = "") noexcept;
  // Shows the About box: ProgramName, ProgramAuthor, ProgramCompany and Icon.
  Boolean ShowTolvaAboutBox(std::string& ErrorMessage) noexcept;
  // Shows a file read-only, as text and as hex.
  Boolean ViewBinary(const std::string& FilePath, std::string& ErrorMessage) noexcept;
  // Opens a web address in the desktop's browser.
  Boolean LoadURL(const std::string& URL, std::string& ErrorMessage) noexcept;

 private:
  std::unique_ptr<detail::ComponentState> s_;
};

}  // namespace tolva

#endif  // TOLVA_TOLVA2011REGISTER_H_
