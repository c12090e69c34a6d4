// The component's events: Tolva2011RegisterEvents.
#ifndef TOLVA_EVENTS_H_
#define TOLVA_EVENTS_H_

#include <string>

#include "tolva/export.h"
#include "tolva/host_types.h"

namespace tolva {

/// The component's events. A host derives from it and overrides the events it handles; the defaults do
/// nothing. Every parameter is passed by non-const reference, so a handler may change it, and the raising
/// member reads back those it documents (Cancel, for example).
class TOLVA_EXPORT Tolva2011RegisterEvents {
 public:
  /// Destroys the receiver.
  virtual ~Tolva2011RegisterEvents() = default;

  /// "Fires to indicate read/write progress." Raised by the delimited and CSV readers with the stage
  /// ("Reading File - name", "Extracting Values", "Read Complete", ...) as Message and the records read so far
  /// as Records.
  virtual void ReadWriteProgress(std::string& /*Message*/, Long& /*Records*/) {}
  /// A diagnostic text as Message: a handle that can't be closed, the steps of a reconnection.
  virtual void SystemMessage(std::string& /*Message*/) {}
  /// One remote entry found by FTPSessionFileFind: whether it is a Directory, its Name, Size, WriteDate and
  /// WriteTime; set Cancel to true to end the search.
  virtual void FTPSessionFileFound(Boolean& /*Directory*/, std::string& /*Name*/, Long& /*Size*/,
                                   std::string& /*WriteDate*/, std::string& /*WriteTime*/, Boolean& /*Cancel*/) {}
  /// One remote file FilePath deleted by FTPSessionFileDelete or FTPSessionFileDeleteMask; Success tells
  /// whether it was.
  virtual void FTPSessionFileDeleted(std::string& /*FilePath*/, Boolean& /*Success*/) {}
  /// One file FilePath of FTPSessionGetMask transferred; Success tells whether it was.
  virtual void FTPSessionFileDownloaded(std::string& /*FilePath*/, Boolean& /*Success*/) {}
  /// Progress of FTPSessionGetBuffered: BytesRead of TotalBytes of the remote file FileName received.
  virtual void FTPSessionGetProgress(std::string& /*FileName*/, Long& /*BytesRead*/, Long& /*TotalBytes*/) {}
  /// Progress of FTPSessionPutBuffered: BytesWritten of TotalBytes of the local file FileName sent.
  virtual void FTPSessionPutProgress(std::string& /*FileName*/, Long& /*BytesWritten*/, Long& /*TotalBytes*/) {}
};

}  // namespace tolva

#endif  // TOLVA_EVENTS_H_
