#include <tarn/LogFile.h>
#include <tarn/ObjectGraph.h>

using namespace tarn;

void work(ref_ptr<Serializable>& document, const ref_ptr<Serializable>& changed, UndoHistory<Serializable>& history,
          LogFile& log);
void work(ref_ptr<Serializable>& document, const ref_ptr<Serializable>& changed, UndoHistory<Serializable>& history,
          LogFile& log)
{
#include "ObjectGraph.example"
}
