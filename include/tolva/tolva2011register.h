// tolva::Tolva2011Register: the one object a host program embeds.
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

/// The one object a host program embeds: every service is one of its members.
///
/// Members are noexcept and report failure by their result (false, "", 0 or a default) and, where they have
/// one, by the text in their `ErrorMessage` argument. Boolean is the host boolean: true is -1, and an option
/// counts as set only when it is exactly -1. Arguments a member may write back are non-const references.
/// Paths may use `/` or `\` as separators.
///
/// Members run on the host's thread. Long loops raise events and let the host process pending events between
/// units of work, so the host's handlers may stop them (ReadWriteCancel, FTPSessionStop).
class TOLVA_EXPORT Tolva2011Register {
 public:
  /// Creates the component.
  /// @param services the platform services it works on (the real Linux ones by default).
  /// @param container told about property changes and asked to process pending events; not owned, may be null.
  /// @param events receives the component's events; not owned, may be null.
  explicit Tolva2011Register(platform::Services services = platform::LinuxServices(),
                             HostContainer* container = nullptr, Tolva2011RegisterEvents* events = nullptr) noexcept;
  /// Destroys the component; a host ends an open FTP session with FTPSessionClose first.
  ~Tolva2011Register();
  Tolva2011Register(const Tolva2011Register&) = delete;
  Tolva2011Register& operator=(const Tolva2011Register&) = delete;

  /// Replaces the host container (not owned; null for none).
  void SetHostContainer(HostContainer* container) noexcept;
  /// Replaces the receiver of the events (not owned; null for none).
  void SetEvents(Tolva2011RegisterEvents* events) noexcept;

  // ---- Lifecycle (called by the host container) -------------------------
  /// First placement on a host form: sets every persisted property to its default.
  void InitProperties() noexcept;
  /// Loads the persisted properties from `bag`; an absent key takes its default.
  /// No change is notified, and ReadWriteIncrement is left as it is.
  void ReadProperties(PropertyBag& bag) noexcept;
  /// Saves the persisted properties to `bag`, writing only the values that differ from their defaults.
  void WriteProperties(PropertyBag& bag) noexcept;
  /// Keeps the design-time extent equal to the component's picture (ControlWidth by ControlHeight).
  void Resize() noexcept;
  /// The component's design-time width in twips: the width of its picture.
  Long ControlWidth() const noexcept;
  /// The component's design-time height in twips: the height of its picture.
  Long ControlHeight() const noexcept;

  // ---- Properties (persisted unless noted) ------------------------------
  /// The directory the calling program runs from (default empty); BuildPathRun joins names to it.
  std::string DirectoryRun() const noexcept;
  /// Stores `value` as DirectoryRun, unchecked, and notifies the container.
  void DirectoryRun(const std::string& value) noexcept;
  /// The share of the screen a sizable form gets on its first RegistryGetPosition (default 0.75).
  Single FormSizeRatio() const noexcept;
  /// Stores `value` as FormSizeRatio, unchecked (zero and negatives too), and notifies the container.
  void FormSizeRatio(Single value) noexcept;
  /// The icon for the calling program's windows and About box; null when none.
  PictureRef Icon() const noexcept;
  /// Stores the picture reference `value` as Icon and notifies the container.
  void Icon(PictureRef value) noexcept;
  /// The author of the calling program, shown in the About box (default empty).
  std::string ProgramAuthor() const noexcept;
  /// Stores `value` as ProgramAuthor and notifies the container.
  void ProgramAuthor(const std::string& value) noexcept;
  /// The company of the calling program, shown in the About box (default empty).
  std::string ProgramCompany() const noexcept;
  /// Stores `value` as ProgramCompany and notifies the container.
  void ProgramCompany(const std::string& value) noexcept;
  /// The calling program's name (default "Tolva"); message box captions begin with it.
  std::string ProgramName() const noexcept;
  /// Stores `value` as ProgramName (an empty text too) and notifies the container.
  void ProgramName(const std::string& value) noexcept;
  /// The application name the settings are kept under (default empty).
  /// While it is empty every settings get returns its default and every save or delete does nothing.
  std::string RegistryApp() const noexcept;
  /// Stores `value` as RegistryApp and notifies the container.
  void RegistryApp(const std::string& value) noexcept;
  /// The profile file every saved setting is mirrored into; empty (the default) for none.
  std::string RegistryBackupFile() const noexcept;
  /// Stores `value` as RegistryBackupFile and notifies the container.
  void RegistryBackupFile(const std::string& value) noexcept;
  /// True when reading a setting takes it from RegistryBackupFile, when set, and copies it into the store
  /// (default false).
  Boolean RegistryBackupLoad() const noexcept;
  /// Stores `value` as RegistryBackupLoad and notifies the container.
  void RegistryBackupLoad(Boolean value) noexcept;
  /// Records between two progress events of the long readers; run time only, not persisted (0 or less counts as 1).
  Long ReadWriteIncrement() const noexcept;
  /// Stores `value` as ReadWriteIncrement and notifies the container.
  void ReadWriteIncrement(Long value) noexcept;
  /// The default filter of the file dialogs: "Description|patterns" pairs joined by "|".
  std::string DialogFilter() const noexcept;

  // ---- Error texts and user messages ------------------------------------
  /// The text `argMessage` + " [" + shortened `argFile` + "] does not exist." (no brackets when `argFile` is empty).
  std::string ErrorMessageDoesNotExist(const std::string& argMessage, const std::string& argFile) noexcept;
  /// The text `argMessage` + " has not been defined."
  std::string ErrorMessageNotDefined(const std::string& argMessage) noexcept;
  /// The text `Message1` + " [" + shortened `FilePath` + "].", or + "] " + `Message2` when that is given,
  /// as a String Variant.
  Variant ErrorMessageShortenFile(const std::string& Message1, const std::string& FilePath,
                                  const std::string& Message2 = "") noexcept;
  /// The system's one-line text for the error number `ErrorNumber`; "Error Number = n" when it has none.
  std::string FormatErrorMessage(Long ErrorNumber) noexcept;
  /// Shows `ErrorMessage` in an OK message box with a stop icon, captioned ProgramName + " Error".
  void MessageError(const std::string& ErrorMessage) noexcept;
  /// Shows `ErrorMessage` in an OK message box with an information icon, captioned ProgramName + " Information".
  void MessageInfo(const std::string& ErrorMessage) noexcept;
  /// Shows `ErrorMessage` in an OK message box with a warning icon, captioned ProgramName + " Warning".
  void MessageWarn(const std::string& ErrorMessage) noexcept;
  /// Asks the user `ErrorMessage` in a box captioned ProgramName + " Query" with the button set `Buttons`
  /// (4 = Yes/No); returns the pressed button's code (6 Yes, 7 No, ...) as a Long Variant.
  Variant MessageQuery(const std::string& ErrorMessage, Long Buttons) noexcept;

  // ---- Path text helpers ------------------------------------------------
  /// `InputString` ending in one `\` (added when missing); "" stays "".
  std::string AddMissingBackslash(const std::string& InputString) noexcept;
  /// `InputString` ending in one `/` (added when missing); "" stays "".
  std::string AddMissingSlash(const std::string& InputString) noexcept;
  /// `InputString` without one trailing `\`, if it has one.
  std::string RemoveLastBackslash(const std::string& InputString) noexcept;
  /// `InputString` without one trailing `/`, if it has one.
  std::string RemoveLastSlash(const std::string& InputString) noexcept;
  /// `Directory` and `FilePath` joined by a `\`; `FilePath` alone when it holds a `\` already,
  /// "" when it is empty.
  std::string BuildPath(const std::string& Directory, const std::string& FilePath) noexcept;
  /// BuildPath(DirectoryRun, `FilePath`) when DirectoryRun is set and `FilePath` holds no `\`, else `FilePath`.
  std::string BuildPathRun(const std::string& FilePath) noexcept;
  /// The directory part of `FilePath` with its trailing separator; "" when it has no separator.
  std::string FileDirectory(const std::string& FilePath) noexcept;
  /// The name part of `FilePath` after its last separator, extension included.
  std::string FileName(const std::string& FilePath) noexcept;
  /// The name part of `FilePath` without its extension ("a.b.txt" gives "a.b").
  std::string FileNameOnly(const std::string& FilePath) noexcept;
  /// The text after the last "." of `FilePath`, trimmed, without the dot; "" when it has none.
  std::string FileExtension(const std::string& FilePath) noexcept;
  /// `FilePath` without the leading `Directory` (compared ignoring case), or unchanged when it does not start with it.
  std::string FilePathSimplify(const std::string& FilePath, const std::string& Directory) noexcept;
  /// `FilePath` trimmed and, when longer than `MaxLength`, shortened for display by putting "..." in place of
  /// the directories in its middle (/data/dir1/.../dir5/file.txt).
  /// @param FilePath the path to shorten.
  /// @param Delimiter the separator to shorten on, `/` or `\`; empty picks the one with more runs.
  /// @param MaxLength the longest result wanted.
  /// @param StartKeep leading characters never counted or cut (a drive, say).
  /// @param SlashesStart separators kept at the start.
  /// @param SlashesEnd fewest separators kept at the end.
  /// @return the shortened path; the trimmed path when it fits or cannot be shortened.
  std::string FilePathShorten(const std::string& FilePath, const std::string& Delimiter = "", Long MaxLength = 30,
                              Long StartKeep = 2, Long SlashesStart = 2, Long SlashesEnd = 2) noexcept;

  // ---- File system operations and file tests ----------------------------
  /// True when `Directory` names an existing directory (or file).
  Boolean DirectoryExists(const std::string& Directory) noexcept;
  /// Makes `Directory` the current directory; false with the reason in `ErrorMessage` when it can't.
  Boolean DirectoryChange(const std::string& Directory, std::string& ErrorMessage) noexcept;
  /// Creates `Directory` and every missing directory above it; true when it exists afterwards,
  /// false with the reason in `ErrorMessage`.
  Boolean DirectoryMake(const std::string& Directory, std::string& ErrorMessage) noexcept;
  /// True when the file `FilePath` exists and can be opened for reading, or, when it holds "*" or "?",
  /// when at least one ordinary file matches.
  Boolean FileExists(const std::string& FilePath) noexcept;
  /// True when the file `FilePath` holds text (a line end and no NUL in its first 2048 bytes);
  /// for a missing file, when its extension is txt, csv, html, htm or shtml.
  Boolean FileTestAscii(const std::string& FilePath) noexcept;
  /// Compares two files; two missing files count as identical.
  /// @param FilePath1 the first file.
  /// @param FilePath2 the second file.
  /// @param TestDates compare the last-write times to the minute.
  /// @param TestSizes compare the lengths.
  /// @param TestData compare the contents, when the first file is at most `TestDataBytes` long.
  /// @param TestDataBytes the longest first file whose contents are compared.
  /// @return true when no chosen test finds a difference.
  Boolean FileTestIdentical(const std::string& FilePath1, const std::string& FilePath2, Boolean TestDates = kTrue,
                            Boolean TestSizes = kTrue, Boolean TestData = kFalse, Long TestDataBytes = 100000) noexcept;
  /// The value of `Key` in `[Section]` of the profile file `FilePath`, trimmed; `Default` when it is absent or empty.
  std::string FileReadProfileString(const std::string& FilePath, const std::string& Section, const std::string& Key,
                                    const std::string& Default = "") noexcept;
  /// Writes `Value` as `Key` in `[Section]` of the profile file `FilePath`; an empty `Value` deletes the key
  /// (a deletion from a profile that does not exist creates it, empty). The write is atomic and leaves no
  /// other file beside the profile.
  void FileWriteProfileString(const std::string& FilePath, const std::string& Section, const std::string& Key,
                              const std::string& Value) noexcept;
  /// Deletes the file `FilePath`; false with the reason in `ErrorMessage` when it is missing or can't be deleted.
  Boolean KillFile(const std::string& FilePath, std::string& ErrorMessage) noexcept;
  /// Deletes every ordinary file matching `FilePath` ("*" and "?" allowed).
  /// @param FilePath the file or pattern.
  /// @param ErrorMessage receives the reason of a failure.
  /// @param NotExistError when nothing matches, fail with "Files [...] do not exist." (else succeed).
  /// @param ClearAttributes on an access error, make the files writable and try once more.
  /// @return true when the matching files are gone.
  Boolean KillFiles(const std::string& FilePath, std::string& ErrorMessage, Boolean NotExistError = kTrue,
                    Boolean ClearAttributes = kTrue) noexcept;
  /// Deletes the files of the temporary directory whose names begin with `TempTag` and end in ".tmp";
  /// false with the reason in `ErrorMessage`.
  Boolean KillTempFiles(const std::string& TempTag, std::string& ErrorMessage) noexcept;
  /// This platform's stand-in for the Windows directory, with a trailing separator.
  std::string WinDirectory() noexcept;
  /// This platform's stand-in for the system directory, with a trailing separator.
  std::string WinSysDirectory() noexcept;
  /// The temporary directory ($TMPDIR, else /tmp/) with its trailing separator.
  std::string WinTempPath() noexcept;
  /// A new unused name of a file in the temporary directory, starting with the first three letters of `TempTag`
  /// in lower case ("tvq" when shorter); `DefaultFile` when no name can be made.
  std::string WinTempFile(const std::string& TempTag = "", const std::string& DefaultFile = "") noexcept;

  // ---- Timing and text utilities ----------------------------------------
  /// How often the characters of `CountCharacters` occur in `InputString`, each one counted over the whole text;
  /// `IgnoreCase` compares letters ignoring case, `RepeatAsOne` counts a run of one character once.
  Long StringCountCharacters(const std::string& InputString, const std::string& CountCharacters,
                             Boolean IgnoreCase = kFalse, Boolean RepeatAsOne = kFalse) noexcept;
  /// `InputString` without the blanks, line ends and control characters at both ends.
  std::string TrimCrLf(const std::string& InputString) noexcept;
  /// Waits `MilliSeconds`, letting the host process its pending events meanwhile.
  void WaitMilliSeconds(Long MilliSeconds) noexcept;
  /// Waits until the clock has moved on `Seconds` whole seconds, letting the host process its events meanwhile.
  void WaitSeconds(Long Seconds) noexcept;
  /// The last day of month `Month` of year `Year`.
  Date LastDateInMonth(Long Month, Long Year) noexcept;
  /// `Seconds` as minutes and two-digit seconds (65 gives "1:05", 3600 "60:00").
  std::string MinutesSeconds(Long Seconds) noexcept;
  /// `Minutes` as hours and two-digit minutes (90 gives "1:30").
  std::string HoursMinutes(Long Minutes) noexcept;
  /// `Seconds` as hours, minutes and seconds (3725 gives "1:02:05"), or minutes and seconds under an hour.
  std::string HoursMinutesSeconds(Long Seconds) noexcept;
  /// True when `InputString` has the shape of a clock time: fields split by single `TimeDelimiter`s,
  /// none at either end ("12:30" and "1:2:3" are, "12:" and "12::30" are not); the digits are not checked.
  Boolean IsTime(const std::string& InputString, const std::string& TimeDelimiter = ":") noexcept;
  /// The command line `ProgramCall` with its first "%1" replaced by `FilePath` in double quotes
  /// (the quoted path appended after a blank when there is no "%1").
  std::string ProgramCallSetup(const std::string& ProgramCall, const std::string& FilePath) noexcept;
  /// Starts the command line `ProgramCommand` as a new program; true when it started.
  Boolean ProgramExecute(const std::string& ProgramCommand) noexcept;
  /// One value of the settings store: `ValueName` ("" for the default value) of the key `KeyName`
  /// under the root `KeyArea`; a String or a Long Variant, or "" when absent or unreadable.
  Variant QueryValue(Long KeyArea, const std::string& KeyName, const std::string& ValueName) noexcept;
  /// Finds the program registered for the file extension `Extension` ("txt" or ".txt").
  /// @param Extension the extension, with or without its dot.
  /// @param ProgramName receives the program's name.
  /// @param ProgramCall receives its open command, with "%1" in place of the file.
  /// @return false when no program is registered.
  Boolean QueryProgramForExtension(const std::string& Extension, std::string& ProgramName,
                                   std::string& ProgramCall) noexcept;
  /// This computer's name, or "" when it can't be read.
  std::string ComputerName() noexcept;
  /// The name of the user running the program, or "" when it can't be read.
  std::string UserName() noexcept;

  // ---- Text files -------------------------------------------------------
  /// "Reads a text file." The whole file `FilePath` as it is; "" when it is empty or can't be read.
  std::string ReadFile(const std::string& FilePath) noexcept;
  /// "Fully reads a text file." The whole file `FilePath`; "" with the reason in `ErrorMessage` when the name
  /// is empty, the file is missing, empty or unreadable.
  std::string ReadFileFull(const std::string& FilePath, std::string& ErrorMessage) noexcept;
  /// "Writes a text file." Replaces the file `FilePath` with `Output`; false with the reason in `ErrorMessage`.
  Boolean WriteFile(const std::string& FilePath, const std::string& Output, std::string& ErrorMessage) noexcept;
  /// "Cancels a read/write." Asks the running long reader to stop at its next progress event.
  void ReadWriteCancel() noexcept;
  /// "Reads a text file to an array." Splits the lines of a delimited file into rows and fields
  /// (double quotes may hold delimiters, doubled quotes and line breaks); empty lines are skipped.
  /// @param FilePath the file to read.
  /// @param InputArray a two-dimensional array; row r, field c goes to (r, c), counted from 1.
  ///        Cells outside its bounds are dropped.
  /// @param MaxRows the most rows stored.
  /// @param MaxColumns the most fields stored per row.
  /// @param ReturnedRows receives the rows stored.
  /// @param ReturnedColumns receives the widest stored row's field count.
  /// @param ActualRows receives the rows in the file.
  /// @param ActualColumns receives the widest row among the stored cells (at most `MaxColumns`).
  /// @param ErrorMessage receives the reason of a failure, or "Read Interrupted." after ReadWriteCancel.
  /// @param Delimiter the field separator, one character.
  /// @param TrimValues strip blanks from both ends of the stored values.
  /// @return true when at least one row was read.
  Boolean ReadFileToArray(const std::string& FilePath, HostArray<std::string>& InputArray, Long MaxRows,
                          Long MaxColumns, Long& ReturnedRows, Long& ReturnedColumns, Long& ActualRows,
                          Long& ActualColumns, std::string& ErrorMessage, const std::string& Delimiter = ",",
                          Boolean TrimValues = kTrue) noexcept;
  /// "Gets the size of a text file as an array." Counts what ReadFileToArray would find.
  /// @param FilePath the file to measure.
  /// @param ActualRows receives the number of rows.
  /// @param ActualColumns receives the widest row's field count.
  /// @param ErrorMessage receives the reason of a failure, or "Test Interrupted." after ReadWriteCancel.
  /// @param Delimiter the field separator, one character.
  /// @param TestRows leading rows left out of the width (a header, say).
  /// @return true when the file was read.
  Boolean ReadFileToArrayGetSize(const std::string& FilePath, Long& ActualRows, Long& ActualColumns,
                                 std::string& ErrorMessage, const std::string& Delimiter = ",",
                                 Long TestRows = 0) noexcept;
  /// "Reads a text file to a CSV database." The first non-empty line holds the field names, each later one a record.
  /// @param FilePath the file to read.
  /// @param FieldNames a one-dimensional array: the names of the fields asked for, from index 1.
  /// @param FieldValues a two-dimensional array: (record, field) of the ranges asked for, from (1, 1).
  /// @param FirstRecord the first record wanted; records count from 1, and below 1 means 1.
  /// @param LastRecord the last record wanted; 0 or less reads the field names only.
  /// @param FirstField the first field wanted; fields count from 1, and below 1 means 1.
  /// @param LastField the last field wanted.
  /// @param NumberRecords receives LastRecord - FirstRecord + 1 of the range read: negative for a reversed
  ///        range, which stores nothing.
  /// @param NumberFields receives LastField - FirstField + 1 of the range read, likewise.
  /// @param ErrorMessage receives the reason of a failure.
  /// @param Delimiter the field separator, one character.
  /// @param TrimValues strip blanks from both ends of the stored values.
  /// @return true when the file was read.
  Boolean ReadFileToCSVDatabase(const std::string& FilePath, HostArray<std::string>& FieldNames,
                                HostArray<std::string>& FieldValues, Long FirstRecord, Long LastRecord, Long FirstField,
                                Long LastField, Long& NumberRecords, Long& NumberFields, std::string& ErrorMessage,
                                const std::string& Delimiter = ",", Boolean TrimValues = kTrue) noexcept;

  // ---- Application settings ---------------------------------------------
  /// The setting `Key` of `Section` under RegistryApp, or `Default` when absent.
  std::string RegistryGetSetting(const std::string& Section, const std::string& Key,
                                 const std::string& Default) noexcept;
  /// The setting `Key` of `Section` as a Long: its leading number rounded, 0 when it has none; `Default` when absent.
  Long RegistryGetSettingLong(const std::string& Section, const std::string& Key, Long Default) noexcept;
  /// The setting `Key` of `Section` as a Double: its leading number, 0 when it has none; `Default` when absent.
  Double RegistryGetSettingDouble(const std::string& Section, const std::string& Key, Double Default) noexcept;
  /// The setting `Key` of `Section` as a host Boolean (true/false, yes/no, -1/1/0, in any case); `Default` when
  /// absent or none of these.
  Boolean RegistryGetSettingBoolean(const std::string& Section, const std::string& Key, Boolean Default) noexcept;
  /// Saves `Value` as the setting `Key` of `Section` (and in RegistryBackupFile, when set).
  void RegistrySaveSetting(const std::string& Section, const std::string& Key, const std::string& Value) noexcept;
  /// Saves the Long `Value` as the setting `Key` of `Section`, as text.
  void RegistrySaveSettingLong(const std::string& Section, const std::string& Key, Long Value) noexcept;
  /// Saves the Double `Value` as the setting `Key` of `Section`, as text.
  void RegistrySaveSettingDouble(const std::string& Section, const std::string& Key, Double Value) noexcept;
  /// Saves the Boolean `Value` as the setting `Key` of `Section`, as text.
  void RegistrySaveSettingBoolean(const std::string& Section, const std::string& Key, Boolean Value) noexcept;
  /// Deletes the setting `Key` of `Section` (not from the backup file).
  void RegistryDeleteKey(const std::string& Section, const std::string& Key) noexcept;
  /// Deletes `Section` with all its settings (not from the backup file).
  void RegistryDeleteSection(const std::string& Section) noexcept;
  /// Puts the names of the application's sections into `Sections` from index 1, at most `MaxSections` of them;
  /// returns their number, or `MaxSections` + 1 when there are more.
  Long RegistryGetSections(HostArray<std::string>& Sections, Long MaxSections) noexcept;
  /// True when the application has a section named `Section` (compared ignoring case).
  Boolean RegistryTestSection(const std::string& Section) noexcept;
  /// "Gets the form position from the Windows registry and then positions the form."
  /// Places `FormToPosition` where its `Section` remembers, centred on the screen the first time
  /// (a sizable form sized by FormSizeRatio).
  void RegistryGetPosition(Form& FormToPosition, const std::string& Section = "Startup") noexcept;
  /// "Saves the form position to the Windows registry." Saves the normal placement of `FormToPosition`
  /// in `Section` (for a minimised or maximised form, the placement it had before).
  void RegistrySavePosition(Form& FormToPosition, const std::string& Section = "Startup") noexcept;

  // ---- FTP sessions and errors ------------------------------------------
  /// Opens the component's one FTP session on `Host` ("host" or "host:port") as `UserID` with `Password`;
  /// false with the reason in `ErrorMessage`.
  Boolean FTPSessionOpen(const std::string& Host, const std::string& UserID, const std::string& Password,
                         std::string& ErrorMessage) noexcept;
  /// Closes the FTP session, if one is open.
  void FTPSessionClose() noexcept;
  /// Closes and reopens the session with its stored credentials and returns to its current remote directory;
  /// false with the reason in `ErrorMessage`.
  Boolean FTPSessionReconnect(std::string& ErrorMessage) noexcept;
  /// True when the session can start a new operation; false with the reason in `ErrorMessage` (no connection,
  /// no session, a search still running).
  Boolean FTPSessionTest(std::string& ErrorMessage) noexcept;
  /// Clears the last FTP error and returns the session's Internet handle (0 when no session is open).
  Long FTPSession() noexcept;
  /// Clears the last FTP error and returns the session's connection handle (0 when not connected).
  Long FTPConnect() noexcept;
  /// Closes the FTP handle `Handle` and sets it to 0; a failure is reported by a SystemMessage event.
  void FTPCloseHandle(Long& Handle) noexcept;
  /// The full text of the last FTP error ("Title - Detail."), or "".
  std::string FTPLastError() noexcept;
  /// The short text of the last FTP error (its detail), or "".
  std::string FTPShortError() noexcept;
  /// The text of the FTP or system error number `ErrorNumber`; 0 takes the pending error's number
  /// and writes it back.
  std::string FTPExtendedError(Long& ErrorNumber) noexcept;
  /// `Tag` + "/" + FTPExtendedError(`ErrorNumber`), or that text alone when `Tag` is empty.
  std::string FTPSessionError(const std::string& Tag, Long& ErrorNumber) noexcept;
  /// "Connected" when a network interface is up, else ""; `ConnectFlags` receives the connection flags.
  std::string IsConnected(Long& ConnectFlags) noexcept;
  /// The connect time-out of FTP connections opened from now on, in ms (default 60000); a time-out reports error 12002.
  Long FTPConnectTimeout() const noexcept;
  /// Sets FTPConnectTimeout to `MilliSeconds`.
  void FTPConnectTimeout(Long MilliSeconds) noexcept;
  /// The read time-out of FTP connections opened from now on, in ms (default 60000); a time-out reports error 12002.
  Long FTPReadTimeout() const noexcept;
  /// Sets FTPReadTimeout to `MilliSeconds`.
  void FTPReadTimeout(Long MilliSeconds) noexcept;
  /// Extension: how FTP connections opened from now on (sessions and one-call transfers) are secured: 0 plain FTP
  /// (the default), 1 explicit FTP over TLS required (a server that cannot is not logged in to), 2 TLS when the
  /// server offers it, else plain. Any other value counts as 1. Kept in the property bag.
  Long FTPSecurity() const noexcept;
  /// Extension: sets FTPSecurity and notifies the host.
  void FTPSecurity(Long Mode) noexcept;
  /// Extension: PEM file of the authorities, or of the server's own certificate, that FTP over TLS trusts; empty (the
  /// default) means the system's trusted authorities. The server's name is always checked. Kept in the property bag.
  std::string FTPCertificateFile() const noexcept;
  /// Extension: sets FTPCertificateFile and notifies the host.
  void FTPCertificateFile(const std::string& Path) noexcept;

  // ---- FTP directories --------------------------------------------------
  /// Creates the remote directory `Directory`; false with the reason in `ErrorMessage`.
  Boolean FTPSessionDirectoryCreate(const std::string& Directory, std::string& ErrorMessage) noexcept;
  /// The current remote directory, or "" when it can't be read.
  std::string FTPSessionDirectoryCurrent() noexcept;
  /// Makes `Directory` the current remote directory; true when it did.
  Boolean FTPSessionDirectoryCurrentSet(const std::string& Directory) noexcept;
  /// Removes the remote directory `Directory`; true when it did.
  Boolean FTPSessionDirectoryDelete(const std::string& Directory) noexcept;
  /// True when the remote directory `Directory` exists.
  Boolean FTPSessionDirectoryExists(const std::string& Directory) noexcept;

  // ---- FTP finding, listing and deleting --------------------------------
  /// Lists the entries of the current remote directory matching `FileMask` ("*" and "?"), raising
  /// FTPSessionFileFound for each; returns how many were reported, with the reason of a failure in `ErrorMessage`.
  /// Entries come as the server names them: "." and ".." that a server lists are counted and reported as directories.
  Long FTPSessionFileFind(const std::string& FileMask, std::string& ErrorMessage) noexcept;
  /// Counts the remote entries matching `FileMask` into `NumberFiles` and `NumberDirectories`;
  /// false with the reason in `ErrorMessage`.
  Boolean FTPSessionFileFindCount(const std::string& FileMask, Long& NumberFiles, Long& NumberDirectories,
                                  std::string& ErrorMessage) noexcept;
  /// Puts the names of the remote directories matching `FileMask` into `Directories` from index 1,
  /// at most `MaxDirectories`; returns how many match (may exceed `MaxDirectories`), the reason of a failure
  /// in `ErrorMessage`.
  Long FTPSessionFileFindDirectories(const std::string& FileMask, HostArray<std::string>& Directories,
                                     Long MaxDirectories, std::string& ErrorMessage) noexcept;
  /// Puts the names of the remote files matching `FileMask` into `Files` from index 1, at most `MaxFiles`;
  /// returns how many match (may exceed `MaxFiles`), the reason of a failure in `ErrorMessage`.
  Long FTPSessionFileFindFiles(const std::string& FileMask, HostArray<std::string>& Files, Long MaxFiles,
                               std::string& ErrorMessage) noexcept;
  /// Lists the remote files matching a mask with their sizes, dates and times.
  /// @param FileMask the mask, with "*" and "?".
  /// @param Files receives the names from index 1.
  /// @param Sizes receives the sizes (2147483647 for 2 GiB and more).
  /// @param Dates receives the last-write dates.
  /// @param Times receives the last-write times.
  /// @param MaxFiles the most entries stored.
  /// @param ErrorMessage receives the reason of a failure.
  /// @return how many files match, which may exceed `MaxFiles`.
  Long FTPSessionFileFindFilesFull(const std::string& FileMask, HostArray<std::string>& Files, HostArray<Long>& Sizes,
                                   HostArray<std::string>& Dates, HostArray<std::string>& Times, Long MaxFiles,
                                   std::string& ErrorMessage) noexcept;
  /// True when the remote file (or directory) `FileName` exists; a failure of the search leaves its reason
  /// in `ErrorMessage`.
  Boolean FTPSessionFileExists(const std::string& FileName, std::string& ErrorMessage) noexcept;
  /// As FTPSessionFileExists, and when found sets `Size`, `WriteDate` and `WriteTime` of the remote file `FileName`.
  Boolean FTPSessionFileExistsFull(const std::string& FileName, Long& Size, std::string& WriteDate,
                                   std::string& WriteTime, std::string& ErrorMessage) noexcept;
  /// Deletes the remote file `FilePath` and raises FTPSessionFileDeleted; true when it did.
  Boolean FTPSessionFileDelete(const std::string& FilePath) noexcept;
  /// Deletes every remote file matching `FileMask`, raising FTPSessionFileDeleted for each;
  /// false with the reason in `ErrorMessage`.
  Boolean FTPSessionFileDeleteMask(const std::string& FileMask, std::string& ErrorMessage) noexcept;

  // ---- FTP transfers ----------------------------------------------------
  /// Downloads `RemoteFile` to `LocalFile` (replacing it), as text when `AsciiFile` is true;
  /// false with the reason in `ErrorMessage`.
  Boolean FTPSessionGet(const std::string& RemoteFile, const std::string& LocalFile, Boolean AsciiFile,
                        std::string& ErrorMessage) noexcept;
  /// Downloads `RemoteFile` to `LocalFile` in binary and again as text when the copy holds text (FileTestAscii);
  /// false with the reason in `ErrorMessage`.
  Boolean FTPSessionGetAuto(const std::string& RemoteFile, const std::string& LocalFile,
                            std::string& ErrorMessage) noexcept;
  /// "True" when the last FTPSessionGetAuto fetched text, else "False".
  std::string FTPSessionGetAutoAscii() const noexcept;
  /// Downloads every remote file matching `FileMask` into `LocalDirectory` with FTPSessionGetAuto, raising
  /// FTPSessionFileDownloaded for each; false with the reason in `ErrorMessage`, also when FTPSessionStop stopped it.
  /// A listed name that is empty, ".", "..", or holds `/`, `\` or a NUL is never made a local path:
  /// FTPSessionFileDownloaded reports it with Success false.
  Boolean FTPSessionGetMask(const std::string& FileMask, const std::string& LocalDirectory,
                            std::string& ErrorMessage) noexcept;
  /// Uploads `LocalFile` as `RemoteFile`, as text when `AsciiFile` is true; false with the reason in `ErrorMessage`.
  Boolean FTPSessionPut(const std::string& LocalFile, const std::string& RemoteFile, Boolean AsciiFile,
                        std::string& ErrorMessage) noexcept;
  /// As FTPSessionGet, in blocks of `BufferSize` bytes (at most 100000) with FTPSessionGetProgress events;
  /// FTPSessionStop ends it early, still true (see FTPSessionStopped). A file that fits one block goes whole.
  Boolean FTPSessionGetBuffered(const std::string& RemoteFile, const std::string& LocalFile, Boolean AsciiFile,
                                std::string& ErrorMessage, Long BufferSize = 10000) noexcept;
  /// As FTPSessionPut, in blocks of `BufferSize` bytes (at most 100000) with FTPSessionPutProgress events;
  /// FTPSessionStop ends it with false and "Interrupted.". A file that fits one block goes whole.
  Boolean FTPSessionPutBuffered(const std::string& LocalFile, const std::string& RemoteFile, Boolean AsciiFile,
                                std::string& ErrorMessage, Long BufferSize = 10000) noexcept;
  /// Reads the first `BytesRequired` bytes of the remote file `RemoteFile` into `Buffer`, their number into
  /// `BytesWritten`; false with the reason in `ErrorMessage`.
  Boolean FTPSessionGetBuffer(const std::string& RemoteFile, Long BytesRequired, std::string& Buffer,
                              Long& BytesWritten, std::string& ErrorMessage) noexcept;
  /// Asks the running buffered or mask transfer, or search, to stop; meant for the host's event handlers.
  void FTPSessionStop() noexcept;
  /// True when the last stoppable transfer or search was stopped by FTPSessionStop.
  Boolean FTPSessionStopped() const noexcept;

  // ---- One-call FTP transfers and connection tests ----------------------
  /// Connects to `Host` as `UserID` with `Password`, downloads `RemoteFile` to `LocalFile` as text and disconnects;
  /// false with the reason in `ErrorMessage`. The session is not used.
  Boolean FTPGetAsciiFile(const std::string& Host, const std::string& UserID, const std::string& Password,
                          const std::string& RemoteFile, const std::string& LocalFile,
                          std::string& ErrorMessage) noexcept;
  /// As FTPGetAsciiFile, in binary.
  Boolean FTPGetBinaryFile(const std::string& Host, const std::string& UserID, const std::string& Password,
                           const std::string& RemoteFile, const std::string& LocalFile,
                           std::string& ErrorMessage) noexcept;
  /// Connects to `Host` as `UserID` with `Password`, uploads `LocalFile` as `RemoteFile` as text and disconnects;
  /// false with the reason in `ErrorMessage`. The session is not used.
  Boolean FTPPutAsciiFile(const std::string& Host, const std::string& UserID, const std::string& Password,
                          const std::string& LocalFile, const std::string& RemoteFile,
                          std::string& ErrorMessage) noexcept;
  /// As FTPPutAsciiFile, in binary.
  Boolean FTPPutBinaryFile(const std::string& Host, const std::string& UserID, const std::string& Password,
                           const std::string& LocalFile, const std::string& RemoteFile,
                           std::string& ErrorMessage) noexcept;
  /// True when `Host` accepts a connection as `UserID` with `Password`; false with the reason in `ErrorMessage`.
  Boolean FTPTest(const std::string& Host, const std::string& UserID, const std::string& Password,
                  std::string& ErrorMessage) noexcept;
  /// As FTPTest, and true only when the open session also finds the remote directory `Directory`.
  Boolean FTPTestDirectory(const std::string& Host, const std::string& UserID, const std::string& Password,
                           const std::string& Directory, std::string& ErrorMessage) noexcept;

  // ---- Window layout and list boxes -------------------------------------
  /// The height of a window caption, in twips (0 without a display).
  Long CaptionHeight() noexcept;
  /// The height of a menu bar, in twips.
  Long MenuHeight() noexcept;
  /// The border width of a fixed dialog, in twips.
  Long DialogWidth() noexcept;
  /// The border width of a sizable window, in twips.
  Long SizableWidth() noexcept;
  /// The horizontal form margin: 120 twips.
  Long FormMarginX() noexcept;
  /// The vertical form margin: 84 twips at 120 dpi, else 90.
  Long FormMarginY() noexcept;
  /// The left edge of the screen area available to windows, in twips.
  Long ScreenLeft() noexcept;
  /// The top edge of the screen area available to windows, in twips.
  Long ScreenTop() noexcept;
  /// The width of the screen area available to windows, in twips.
  Long ScreenWidth() noexcept;
  /// The height of the screen area available to windows, in twips.
  Long ScreenHeight() noexcept;
  /// "Makes sure that a form is displayed on the screen." Moves `FormToAdjust` inside the screen area
  /// (to its left or top edge when larger).
  void AdjustFormPosition(Form& FormToAdjust) noexcept;
  /// "Aligns a label to a related text or combo box." Sizes `LabelToAlign` to its text and centres it
  /// vertically on `AnchorControl`; with `AlignRight` it ends FormMarginX before it.
  void AlignLabel(Label& LabelToAlign, Control& AnchorControl, Boolean AlignRight) noexcept;
  /// "Setup and size a form to the 'Tolva' standard." Sizes the form of `ControlRight` to one margin beyond
  /// `ControlRight` (right-most) and `ControlBottom` (lowest), then keeps it on the screen.
  void SetupFormTolvaSize(Control& ControlRight, Control& ControlBottom) noexcept;
  /// Sets tab stops on a list box of tab-separated rows and its horizontal scroll extent to the total width.
  /// @param ListObject the list box.
  /// @param Columns the number of columns.
  /// @param ColumnWidths the widths in twips, indexed 1 to `Columns`: filled when `CalculateWidths`,
  ///        else used as given.
  /// @param CalculateWidths measure each column's widest text.
  /// @param ColumnSpace the gap added to every column, in average character widths.
  void ListBoxTabPositionsSet(ListBox& ListObject, Long Columns, HostArray<Long>& ColumnWidths,
                              Boolean CalculateWidths = kTrue, Long ColumnSpace = 2) noexcept;
  /// Shows the standard Open dialog.
  /// @param FilePath receives the chosen file.
  /// @param ErrorMessage empty when the user cancels; says why when no dialog can be shown.
  /// @param Title the dialog's title.
  /// @param Filter "Description|patterns" pairs; empty means DialogFilter().
  /// @param InitialPath a directory or a file to start from.
  /// @return true when a file was chosen.
  Boolean DialogFileOpen2(std::string& FilePath, std::string& ErrorMessage, const std::string& Title = "",
                          const std::string& Filter = "", const std::string& InitialPath = "") noexcept;
  /// The standard Save dialog, with the arguments of DialogFileOpen2; it asks before a chosen file is overwritten.
  Boolean DialogFileSave2(std::string& FilePath, std::string& ErrorMessage, const std::string& Title = "",
                          const std::string& Filter = "", const std::string& InitialPath = "") noexcept;
  /// Shows the About box: ProgramName, ProgramAuthor, ProgramCompany and Icon; false with the reason in `ErrorMessage`.
  Boolean ShowTolvaAboutBox(std::string& ErrorMessage) noexcept;
  /// Shows the file `FilePath` read-only, as text and as hex; false with the reason in `ErrorMessage`.
  Boolean ViewBinary(const std::string& FilePath, std::string& ErrorMessage) noexcept;
  /// Opens the web address `URL` in the desktop's browser; false with the reason in `ErrorMessage`.
  Boolean LoadURL(const std::string& URL, std::string& ErrorMessage) noexcept;

 private:
  std::unique_ptr<detail::ComponentState> s_;
};

}  // namespace tolva

#endif  // TOLVA_TOLVA2011REGISTER_H_
