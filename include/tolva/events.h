// The component's events. A host derives from Tolva2011RegisterEvents and
// overrides the events it handles; every parameter is passed by non-const
// reference, so a handler may change it and the raising member reads back
// those it documents (Cancel, for example). The defaults do nothing.
#ifndef TOLVA_EVENTS_H_
#define TOLVA_EVENTS_H_

#include <string>

#include "tolva/export.h"
#include "tolva/host_types.h"

namespace tolva {

class TOLVA_EXPORT Tolva2011RegisterEvents {
 public:
  virtual ~Tolva2011RegisterEvents() = default;

  // "Fires to indicate read/write progress." Raised by the delimited and CSV readers.
  virtual void ReadWriteProgress(std::string& /*Message*/, Long& /*Records*/) {}
  // Diagnostic texts: a handle that can't be closed, the steps of a reconnection.
  virtual void SystemMessage(std::string& /*Message*/) {}
  // One remote directory entry found by FTPSessionFileFind; set Cancel to end the search.
  virtual void FTPSessionFileFound(Boolean& /*Directory*/, std::string& /*Name*/, Long& /*Size*/,
                                   std::string& /*WriteDate*/, std::string& /*WriteTime*/, Boolean& /*Cancel*/) {}
  // One remote file deleted (or not) by FTPSessionFileDelete / FTPSessionFileDeleteMask.
  virtual void FTPSessionFileDeleted(std::string& /*FilePath*/, Boolean& /*Success*/) {}
  // One file of FTPSessionGetMask transferred (or not).
  virtual void FTPSessionFileDownloaded(std::string& /*FilePath*/, Boolean& /*Success*/) {}
  // Progress of FTPSessionGetBuffered.
  virtual void FTPSessionGetProgress(std::string& /*FileName*/, Long& /*BytesRead*/, Long& /*TotalBytes*/) {}
  // Progress of FTPSessionPutBuffered.
  virtual void FTPSessionPutProgress(std::string& /*FileName*/, Long& /*BytesWritten*/, Long& /*TotalBytes*/) {}
};

}  // namespace tolva

#endif  // TOLVA_EVENTS_H_
